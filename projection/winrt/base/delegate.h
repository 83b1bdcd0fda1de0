// Delegates: callbacks that cross the binary edge. The generated delegate types derive from delegate_base.
#pragma once
#include "winrt/base/agile_ref.h"

namespace winrt::impl
{

template <typename... Parameters>
struct delegate_abi : unknown_abi
{
    virtual int32_t __stdcall Invoke(arg_in<Parameters>... arguments) noexcept = 0;
};

// The object behind a delegate made from a callable H. It may be called in any apartment.
template <typename T, typename H, typename... Parameters>
struct delegate_object final : delegate_abi<Parameters...>
{
    explicit delegate_object(H&& handler) : m_handler(std::move(handler)) {}

    int32_t __stdcall QueryInterface(guid const& id, void** object) noexcept final
    {
        if (is_guid_of<T>(id) || is_guid_of<Windows::Foundation::IUnknown>(id) || is_guid_of<IAgileObject>(id))
        {
            *object = static_cast<unknown_abi*>(this);
            AddRef();
            return error_ok;
        }
        *object = nullptr;
        return error_no_interface;
    }
    uint32_t __stdcall AddRef() noexcept final { return add_one(m_references); }
    uint32_t __stdcall Release() noexcept final
    {
        auto const remaining = subtract_one(m_references);
        if (remaining == 0)
        {
            delete this;
        }
        return remaining;
    }
    int32_t __stdcall Invoke(arg_in<Parameters>... arguments) noexcept final
    try
    {
        m_handler(borrow<Parameters>(arguments)...);
        return error_ok;
    }
    catch (...)
    {
        return to_hresult();
    }

  private:
    ~delegate_object() = default;

    H m_handler;
    std::atomic<uint32_t> m_references{1};
};

// Made from a lambda or a function, from an object and its method (the object must outlive the delegate), or from a
// strong or weak reference and a method. A method whose object has been destroyed is not called.
template <typename T, typename... Parameters>
struct delegate_base : Windows::Foundation::IUnknown
{
    delegate_base(std::nullptr_t = nullptr) noexcept {}
    delegate_base(void* object, take_ownership_from_abi_t) noexcept : IUnknown(object, take_ownership_from_abi) {}
    template <typename H>
        requires(!std::is_base_of_v<IUnknown, std::remove_cvref_t<H>> &&
                 std::is_invocable_v<std::decay_t<H>&, Parameters const&...>)
    delegate_base(H&& handler) : delegate_base(make_object(std::decay_t<H>(std::forward<H>(handler))))
    {
    }
    template <typename O, typename M>
        requires std::is_member_function_pointer_v<M>
    delegate_base(O* object, M method)
        : delegate_base([=](Parameters const&... arguments) { (object->*method)(arguments...); })
    {
    }
    template <typename O, typename M>
    delegate_base(com_ptr<O>&& object, M method)
        : delegate_base([object = std::move(object), method](Parameters const&... arguments) {
              ((*object).*method)(arguments...);
          })
    {
    }
    template <typename O, typename M>
    delegate_base(weak_ref<O>&& object, M method)
        : delegate_base([object = std::move(object), method](Parameters const&... arguments) {
              if (auto const strong = object.get())
              {
                  ((*strong).*method)(arguments...);
              }
          })
    {
    }

    void operator()(Parameters const&... arguments) const
    {
        check_hresult(
            static_cast<delegate_abi<Parameters...>*>(get_abi(*this))->Invoke(bind_in<Parameters>(arguments)...));
    }

  private:
    template <typename H>
    static delegate_base make_object(H&& handler)
    {
        auto* object = new delegate_object<T, H, Parameters...>(std::move(handler));
        return {static_cast<void*>(object), take_ownership_from_abi};
    }
};

// A delegate that may be called in any apartment: itself, or one that calls it through an agile reference.
template <typename T>
T make_agile_delegate(T const& delegate)
{
    if (!delegate || delegate.template try_as<IAgileObject>())
    {
        return delegate;
    }
    return [agile = agile_ref<T>(delegate)](auto const&... arguments) {
        if (auto const target = agile.get())
        {
            target(arguments...);
        }
    };
}

// False when the handler's process or apartment is gone, so that it need not be called again. Any other failure of a
// handler stays with the handler.
template <typename Delegate, typename... Arguments>
bool invoke(Delegate const& delegate, Arguments const&... arguments) noexcept
{
    constexpr auto scriptGone = static_cast<int32_t>(0x89020001);
    try
    {
        delegate(arguments...);
        return true;
    }
    catch (...)
    {
        auto const code = to_hresult();
        return code != error_disconnected && code != error_server_unavailable && code != scriptGone;
    }
}

} // namespace winrt::impl
