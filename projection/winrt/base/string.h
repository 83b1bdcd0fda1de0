// winrt::hstring, an immutable string shared by reference with the system, and the parameter type that passes text
// without copying it.
#pragma once
#include "winrt/base/hresult.h"

namespace winrt
{

struct hstring
{
    using value_type = wchar_t;
    using size_type = uint32_t;
    using const_reference = value_type const&;
    using const_pointer = value_type const*;
    using const_iterator = const_pointer;
    using const_reverse_iterator = std::reverse_iterator<const_iterator>;

    hstring() noexcept = default;
    hstring(std::nullptr_t) = delete;
    hstring(void* handle, take_ownership_from_abi_t) noexcept : m_handle(handle) {}
    hstring(hstring const& other) : m_handle(duplicate(other.m_handle)) {}
    hstring(hstring&& other) noexcept : m_handle(std::exchange(other.m_handle, nullptr)) {}
    hstring(wchar_t const* text) : hstring(std::wstring_view(text)) {}
    hstring(wchar_t const* text, uint32_t size) : m_handle(create(text, size)) {}
    explicit hstring(std::wstring_view text) : hstring(text.data(), static_cast<uint32_t>(text.size())) {}
    hstring(std::initializer_list<wchar_t> text) : hstring(text.begin(), static_cast<uint32_t>(text.size())) {}
    ~hstring() noexcept { clear(); }

    hstring& operator=(hstring const& other) { return *this = hstring(other); }
    hstring& operator=(hstring&& other) noexcept
    {
        if (this != &other)
        {
            clear();
            m_handle = std::exchange(other.m_handle, nullptr);
        }
        return *this;
    }
    hstring& operator=(std::nullptr_t) = delete;
    hstring& operator=(std::wstring_view text) { return *this = hstring(text); }
    hstring& operator=(wchar_t const* text) { return *this = hstring(text); }
    hstring& operator=(std::initializer_list<wchar_t> text) { return *this = hstring(text); }

    void clear() noexcept
    {
        if (m_handle)
        {
            impl::os::WindowsDeleteString(m_handle);
            m_handle = nullptr;
        }
    }

    operator std::wstring_view() const noexcept
    {
        uint32_t size = 0;
        auto const* text = impl::os::WindowsGetStringRawBuffer(m_handle, &size);
        return {text, size};
    }
    wchar_t const* c_str() const noexcept { return impl::os::WindowsGetStringRawBuffer(m_handle, nullptr); }
    wchar_t const* data() const noexcept { return c_str(); }
    uint32_t size() const noexcept { return impl::os::WindowsGetStringLen(m_handle); }
    bool empty() const noexcept { return m_handle == nullptr; }
    wchar_t const& operator[](uint32_t position) const noexcept { return data()[position]; }
    wchar_t const& front() const noexcept { return *data(); }
    wchar_t const& back() const noexcept { return data()[size() - 1]; }
    const_iterator begin() const noexcept { return data(); }
    const_iterator cbegin() const noexcept { return begin(); }
    const_iterator end() const noexcept { return data() + size(); }
    const_iterator cend() const noexcept { return end(); }
    const_reverse_iterator rbegin() const noexcept { return const_reverse_iterator(end()); }
    const_reverse_iterator rend() const noexcept { return const_reverse_iterator(begin()); }
    bool starts_with(std::wstring_view text) const noexcept { return std::wstring_view(*this).starts_with(text); }
    bool ends_with(std::wstring_view text) const noexcept { return std::wstring_view(*this).ends_with(text); }

    friend void swap(hstring& left, hstring& right) noexcept { std::swap(left.m_handle, right.m_handle); }

  private:
    static void* create(wchar_t const* text, uint32_t size)
    {
        void* handle = nullptr;
        check_hresult(impl::os::WindowsCreateString(text, size, &handle));
        return handle;
    }
    static void* duplicate(void* handle)
    {
        void* copy = nullptr;
        check_hresult(impl::os::WindowsDuplicateString(handle, &copy));
        return copy;
    }

    void* m_handle{};
};

namespace impl
{

template <>
struct abi<hstring>
{
    using type = void*;
};

template <typename T>
concept text_like =
    !std::is_null_pointer_v<T> && (std::is_same_v<T, hstring> || std::is_convertible_v<T const&, std::wstring_view>);

} // namespace impl

template <impl::text_like Right>
bool operator==(hstring const& left, Right const& right) noexcept
{
    return std::wstring_view(left) == std::wstring_view(right);
}

template <impl::text_like Right>
std::strong_ordering operator<=>(hstring const& left, Right const& right) noexcept
{
    return std::wstring_view(left) <=> std::wstring_view(right);
}

namespace impl
{

inline hstring concatenate(std::wstring_view left, std::wstring_view right)
{
    wchar_t* text = nullptr;
    void* buffer = nullptr;
    check_hresult(
        os::WindowsPreallocateStringBuffer(static_cast<uint32_t>(left.size() + right.size()), &text, &buffer));
    left.copy(text, left.size());
    right.copy(text + left.size(), right.size());
    void* handle = nullptr;
    auto const promoted = os::WindowsPromoteStringBuffer(buffer, &handle);
    if (promoted < 0)
    {
        os::WindowsDeleteStringBuffer(buffer);
        throw_hresult(promoted);
    }
    return {handle, take_ownership_from_abi};
}

} // namespace impl

template <impl::text_like Right>
hstring operator+(hstring const& left, Right const& right)
{
    return impl::concatenate(left, right);
}

template <impl::text_like Left>
    requires(!std::is_same_v<Left, hstring>)
hstring operator+(Left const& left, hstring const& right)
{
    return impl::concatenate(left, right);
}

namespace param
{

// Text on its way into a call: a literal, wchar_t const*, wstring or wstring_view is lent for the call (it must end
// with a null character), an hstring is passed as it is.
struct hstring
{
    hstring() noexcept = default;
    hstring(hstring const&) = delete;
    hstring& operator=(hstring const&) = delete;
    hstring(std::nullptr_t) = delete;

    hstring(winrt::hstring const& text) noexcept : m_handle(*reinterpret_cast<void* const*>(&text)) {}
    hstring(wchar_t const* text) : hstring(std::wstring_view(text)) {}
    hstring(std::wstring const& text) : hstring(std::wstring_view(text)) {}
    hstring(std::wstring_view text)
    {
        check_hresult(impl::os::WindowsCreateStringReference(text.data(), static_cast<uint32_t>(text.size()), &m_header,
                                                             &m_handle));
    }

    operator winrt::hstring const&() const noexcept { return *reinterpret_cast<winrt::hstring const*>(&m_handle); }

  private:
    void* m_handle{};
    impl::os::string_header m_header;
};

} // namespace param

} // namespace winrt

template <>
struct std::hash<winrt::hstring>
{
    size_t operator()(winrt::hstring const& value) const noexcept { return std::hash<std::wstring_view>{}(value); }
};
