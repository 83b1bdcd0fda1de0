// winrt::weak_ref: a reference that does not keep its object alive.
#pragma once
#include "winrt/base/consume.h"

namespace winrt
{

template <typename D, typename I>
D* get_self(I const& from) noexcept;

namespace impl
{

template <typename T>
concept implementation = requires { typename T::implements_type; };

} // namespace impl

// T is a projected type, or an implementation: get then gives a com_ptr.
template <typename T>
struct weak_ref
{
    weak_ref(std::nullptr_t = nullptr) noexcept {}
    weak_ref(impl::com_ref<T> const& object)
    {
        if (object)
        {
            auto const source = object.template as<impl::IWeakReferenceSource>();
            check_hresult(source->GetWeakReference(m_reference.put()));
        }
    }

    // Null when the object has been destroyed.
    auto get() const noexcept
    {
        if constexpr (impl::implementation<T>)
        {
            using interface_type = typename T::implements_type::first_interface;
            auto object = resolve<interface_type>();
            auto* self = object ? get_self<T>(object) : nullptr;
            detach_abi(object); // its reference is the implementation's
            return com_ptr<T>(self, take_ownership_from_abi);
        }
        else
        {
            return resolve<impl::com_ref<T>>();
        }
    }

    explicit operator bool() const noexcept { return static_cast<bool>(m_reference); }

  private:
    template <typename I>
    I resolve() const noexcept
    {
        void* result = nullptr;
        if (m_reference)
        {
            m_reference->Resolve(guid_of<T>(), &result);
        }
        return {result, take_ownership_from_abi};
    }

    com_ptr<impl::IWeakReference> m_reference;
};

template <typename T>
weak_ref<T> make_weak(T const& object)
{
    return object;
}

} // namespace winrt
