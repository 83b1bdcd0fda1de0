// winrt::implements, the base of every implementation, and the functions that make one.
#pragma once
#include "winrt/base/root.h"

namespace winrt
{

// D derives from implements<D, interfaces and markers...> and has a method for each slot of each interface.
template <typename D, typename... I>
struct implements : impl::producers<D, typename impl::root_implements<D, I...>::interfaces>,
                    impl::root_implements<D, I...>
{
    using implements_type = implements;
    using typename impl::root_implements<D, I...>::first_interface;
    using IInspectable = Windows::Foundation::IInspectable;

    operator IInspectable() const noexcept
    {
        IInspectable result;
        copy_from_abi(result, this->get_unknown());
        return result;
    }

    hstring GetRuntimeClassName() const override
    {
        if constexpr (requires { typename D::class_type; })
        {
            return hstring(name_of<typename D::class_type>());
        }
        else if constexpr (std::is_same_v<first_interface, IInspectable>)
        {
            throw hresult_not_implemented();
        }
        else
        {
            return hstring(name_of<first_interface>());
        }
    }

    weak_ref<D> get_weak() { return weak_ref<D>(get_strong()); }
    com_ptr<D> get_strong() noexcept
    {
        com_ptr<D> result;
        result.copy_from(static_cast<D*>(this));
        return result;
    }

  protected:
    implements() noexcept = default;
    ~implements() noexcept override = default;

  private:
    // An object on the stack, in a member or from new would hand out references to itself that nobody counts: D is
    // abstract, and make alone completes it.
    virtual void objects_come_from_make() const noexcept = 0;
};

namespace impl
{

template <typename D>
struct made final : D
{
    using D::D;

  private:
    void objects_come_from_make() const noexcept override {}
};

template <typename D>
inline constexpr bool is_implements_v = requires { typename D::implements_type; };

template <typename D, typename... Arguments>
com_ptr<D> create_and_initialize(Arguments&&... arguments)
{
    static_assert(is_implements_v<D>, "D must derive from winrt::implements");
    static_assert(!std::is_final_v<D>, "make derives from D: D must not be final");
    static_assert(
        sizeof...(Arguments) == 0 ||
            !std::is_same_v<typename D::implements_type::first_interface, Windows::Foundation::IActivationFactory>,
        "an activation factory is made without arguments, by the name of its class alone: write one factory "
        "for each class");
    com_ptr<D> result(new made<D>(std::forward<Arguments>(arguments)...), take_ownership_from_abi);
    if constexpr (requires(D& instance) { instance.InitializeComponent(); })
    {
        result->InitializeComponent();
    }
    return result;
}

} // namespace impl

// The address of an implementation's interface, without a reference.
template <typename I, typename D>
auto to_abi(D const* object) noexcept
{
    return static_cast<typename impl::abi<I>::type*>(static_cast<impl::producer<D, I> const*>(object)->abi());
}

template <typename D, typename... Arguments>
com_ptr<D> make_self(Arguments&&... arguments)
{
    return impl::create_and_initialize<D>(std::forward<Arguments>(arguments)...);
}

// A new D as the class that it implements or derives from, else as its first interface.
template <typename D, typename... Arguments>
auto make(Arguments&&... arguments)
{
    using first_interface = typename D::implements_type::first_interface;
    auto self = impl::create_and_initialize<D>(std::forward<Arguments>(arguments)...);
    first_interface result{nullptr};
    attach_abi(result, static_cast<impl::producer<D, first_interface>*>(self.detach())->abi());
    if constexpr (requires { typename D::composable; })
    {
        return result.template as<typename D::composable>();
    }
    else if constexpr (requires { typename D::class_type; })
    {
        return result.template as<typename D::class_type>();
    }
    else
    {
        return result;
    }
}

// The implementation behind an interface of an object that is known to be a D.
template <typename D, typename I>
D* get_self(I const& from) noexcept
{
    using interface_type = default_interface<I>;
    auto* object = static_cast<typename impl::abi<interface_type>::type*>(get_abi(from));
    return &static_cast<impl::produce<D, interface_type>*>(object)->shim();
}

template <typename D, typename I>
D* get_self(com_ptr<I> const& from) noexcept
{
    return static_cast<D*>(from.get());
}

namespace impl
{

// For the factories of composable classes. With an outer object, inner is what it holds: the new object's own
// references and interfaces. The result belongs to the whole.
template <typename D>
class composable_factory
{
  public:
    template <typename I, typename... Arguments>
    static I CreateInstance(Windows::Foundation::IInspectable const& outer, Windows::Foundation::IInspectable& inner,
                            Arguments&&... arguments)
    {
        auto self = make_self<D>(std::forward<Arguments>(arguments)...);
        if (!outer)
        {
            inner = nullptr;
            return self.template as<I>();
        }
        self->m_outer = static_cast<inspectable_abi*>(get_abi(outer));
        // Its one reference is the outer object's from here on.
        attach_abi(inner, static_cast<producer<D, INonDelegatingInspectable>*>(self.detach())->abi());
        return inner.as<I>();
    }
};

} // namespace impl

} // namespace winrt
