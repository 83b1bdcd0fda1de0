// winrt::agile_ref: holds an object for use from any apartment.
#pragma once
#include "winrt/base/implements.h"

namespace winrt
{

template <typename T>
struct agile_ref
{
    agile_ref(std::nullptr_t = nullptr) noexcept {}
    agile_ref(impl::com_ref<T> const& object)
    {
        if (object.template try_as<impl::IAgileObject>())
        {
            m_object = object;
        }
        else if (object)
        {
            constexpr int defaultOptions = 0;
            check_hresult(
                impl::os::RoGetAgileReference(defaultOptions, guid_of<T>(), get_abi(object), m_reference.put_void()));
        }
    }

    impl::com_ref<T> get() const noexcept
    {
        if (!m_reference)
        {
            return m_object;
        }
        void* result = nullptr;
        m_reference->Resolve(guid_of<T>(), &result);
        return {result, take_ownership_from_abi};
    }
    explicit operator bool() const noexcept { return m_object || m_reference; }

  private:
    impl::com_ref<T> m_object{nullptr}; // when it is agile already
    com_ptr<impl::IAgileReference> m_reference;
};

template <typename T>
agile_ref<T> make_agile(T const& object)
{
    return object;
}

} // namespace winrt
