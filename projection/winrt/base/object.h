// IUnknown and IInspectable: the owning pointers that every projected interface, class and delegate derives from.
#pragma once
#include "winrt/base/error.h"

namespace winrt
{

template <typename T>
struct com_ptr;

namespace impl
{

// What a query for T gives: the projected type itself, or a com_ptr for interfaces of classic COM.
template <typename T>
using com_ref = std::conditional_t<std::is_base_of_v<winrt::Windows::Foundation::IUnknown, T>, T, com_ptr<T>>;

template <typename To>
com_ref<To> query(void* from)
{
    if (!from)
    {
        return nullptr;
    }
    void* result = nullptr;
    check_hresult(static_cast<unknown_abi*>(from)->QueryInterface(guid_of<To>(), &result));
    return {result, take_ownership_from_abi};
}

template <typename To>
com_ref<To> try_query(void* from) noexcept
{
    if (!from)
    {
        return nullptr;
    }
    void* result = nullptr;
    static_cast<unknown_abi*>(from)->QueryInterface(guid_of<To>(), &result);
    return {result, take_ownership_from_abi};
}

} // namespace impl

namespace Windows::Foundation
{

struct IUnknown
{
    IUnknown() noexcept = default;
    IUnknown(std::nullptr_t) noexcept {}
    IUnknown(void* object, take_ownership_from_abi_t) noexcept : m_object(object) {}
    IUnknown(IUnknown const& other) noexcept : m_object(other.m_object) { add_reference(); }
    IUnknown(IUnknown&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    ~IUnknown() noexcept { release(); }
    IUnknown& operator=(IUnknown const& other) noexcept
    {
        IUnknown(other).exchange(*this);
        return *this;
    }
    IUnknown& operator=(IUnknown&& other) noexcept
    {
        IUnknown(std::move(other)).exchange(*this);
        return *this;
    }
    IUnknown& operator=(std::nullptr_t) noexcept
    {
        release();
        return *this;
    }
    // Objects are made by make and by factories.
    void* operator new(size_t) = delete;

    explicit operator bool() const noexcept { return m_object != nullptr; }

    // Throws when the object has no such interface; a null pointer gives a null pointer.
    template <typename To>
    auto as() const
    {
        return impl::query<To>(m_object);
    }
    template <typename To>
    void as(To& to) const
    {
        to = impl::query<typename impl_target<To>::type>(m_object);
    }
    template <typename To>
    auto try_as() const noexcept
    {
        return impl::try_query<To>(m_object);
    }
    template <typename To>
    bool try_as(To& to) const noexcept
    {
        to = impl::try_query<typename impl_target<To>::type>(m_object);
        return static_cast<bool>(to);
    }
    hresult as(guid const& id, void** result) const noexcept
    {
        return static_cast<impl::unknown_abi*>(m_object)->QueryInterface(id, result);
    }

    friend void swap(IUnknown& left, IUnknown& right) noexcept { left.exchange(right); }

  private:
    template <typename To>
    struct impl_target
    {
        using type = To;
    };
    template <typename To>
    struct impl_target<com_ptr<To>>
    {
        using type = To;
    };

    void exchange(IUnknown& other) noexcept { std::swap(m_object, other.m_object); }
    void add_reference() const noexcept
    {
        if (m_object)
        {
            static_cast<impl::unknown_abi*>(m_object)->AddRef();
        }
    }
    void release() noexcept
    {
        // The pointer is gone before the object is: its destructor may look at the owner of this pointer.
        if (auto* object = std::exchange(m_object, nullptr))
        {
            static_cast<impl::unknown_abi*>(object)->Release();
        }
        // The analyzer does not see that Release, behind virtual calls, frees what is counted.
    } // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks)

    void* m_object{};
};

enum class TrustLevel : int32_t
{
    BaseTrust,
    PartialTrust,
    FullTrust
};

struct IInspectable : IUnknown
{
    IInspectable(std::nullptr_t = nullptr) noexcept {}
    IInspectable(void* object, take_ownership_from_abi_t) noexcept : IUnknown(object, take_ownership_from_abi) {}
};

} // namespace Windows::Foundation

// The address of the object without a reference of its own.
inline void* get_abi(Windows::Foundation::IUnknown const& object) noexcept
{
    return *reinterpret_cast<void* const*>(&object);
}
inline void* get_abi(hstring const& text) noexcept
{
    return *reinterpret_cast<void* const*>(&text);
}
inline void* get_abi(param::hstring const& text) noexcept
{
    return get_abi(static_cast<hstring const&>(text));
}
inline void* get_unknown(Windows::Foundation::IUnknown const& object) noexcept
{
    return get_abi(object);
}

// Releases what the object holds and returns where a call may store a new one.
inline void** put_abi(Windows::Foundation::IUnknown& object) noexcept
{
    object = nullptr;
    return reinterpret_cast<void**>(&object);
}
inline void** put_abi(hstring& text) noexcept
{
    text.clear();
    return reinterpret_cast<void**>(&text);
}

// The reference passes to, or from, the caller.
template <typename T>
    requires std::is_base_of_v<Windows::Foundation::IUnknown, std::remove_cvref_t<T>> || std::is_same_v<T, hstring>
void* detach_abi(T&& object) noexcept
{
    return std::exchange(*reinterpret_cast<void**>(&object), nullptr);
}
template <typename T>
    requires std::is_base_of_v<Windows::Foundation::IUnknown, T> || std::is_same_v<T, hstring>
void* detach_abi(T& object) noexcept
{
    return std::exchange(*reinterpret_cast<void**>(&object), nullptr);
}
inline void attach_abi(Windows::Foundation::IUnknown& object, void* value) noexcept
{
    *put_abi(object) = value;
}
inline void attach_abi(hstring& text, void* value) noexcept
{
    *put_abi(text) = value;
}
inline void copy_from_abi(Windows::Foundation::IUnknown& object, void* value) noexcept
{
    if (value)
    {
        static_cast<impl::unknown_abi*>(value)->AddRef();
    }
    attach_abi(object, value);
}
inline void copy_from_abi(hstring& text, void* value)
{
    text = reinterpret_cast<hstring const&>(value);
}
inline void copy_to_abi(Windows::Foundation::IUnknown const& object, void*& value) noexcept
{
    auto copy = object;
    value = detach_abi(copy);
}
inline void copy_to_abi(hstring const& text, void*& value)
{
    auto copy = text;
    value = detach_abi(copy);
}

namespace Windows::Foundation
{

// The same object: two interfaces of one object are equal.
inline bool operator==(IUnknown const& left, IUnknown const& right) noexcept
{
    if (get_abi(left) == get_abi(right))
    {
        return true;
    }
    return left && right && get_abi(left.try_as<IUnknown>()) == get_abi(right.try_as<IUnknown>());
}

} // namespace Windows::Foundation

// Names and ids as the object itself returns them.
inline hstring get_class_name(Windows::Foundation::IInspectable const& object)
{
    void* name = nullptr;
    check_hresult(static_cast<impl::inspectable_abi*>(get_abi(object))->GetRuntimeClassName(&name));
    return {name, take_ownership_from_abi};
}

inline Windows::Foundation::TrustLevel get_trust_level(Windows::Foundation::IInspectable const& object)
{
    int32_t level = 0;
    check_hresult(static_cast<impl::inspectable_abi*>(get_abi(object))->GetTrustLevel(&level));
    return static_cast<Windows::Foundation::TrustLevel>(level);
}

} // namespace winrt
