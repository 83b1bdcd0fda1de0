// winrt::hresult and the one place where a failing result code becomes an exception (its counterpart is in error.h).
#pragma once
#include "winrt/base/abi.h"

namespace winrt
{

struct hresult
{
    int32_t value{};

    constexpr hresult() noexcept = default;
    constexpr hresult(int32_t code) noexcept : value(code) {}
    constexpr operator int32_t() const noexcept { return value; }
};

namespace impl
{

inline constexpr int32_t error_ok = 0;
inline constexpr int32_t error_false = 1;
inline constexpr auto error_fail = static_cast<int32_t>(0x80004005);
inline constexpr auto error_access_denied = static_cast<int32_t>(0x80070005);
inline constexpr auto error_wrong_thread = static_cast<int32_t>(0x8001010E);
inline constexpr auto error_not_implemented = static_cast<int32_t>(0x80004001);
inline constexpr auto error_invalid_argument = static_cast<int32_t>(0x80070057);
inline constexpr auto error_out_of_bounds = static_cast<int32_t>(0x8000000B);
inline constexpr auto error_no_interface = static_cast<int32_t>(0x80004002);
inline constexpr auto error_class_not_available = static_cast<int32_t>(0x80040111);
inline constexpr auto error_class_not_registered = static_cast<int32_t>(0x80040154);
inline constexpr auto error_changed_state = static_cast<int32_t>(0x8000000C);
inline constexpr auto error_illegal_method_call = static_cast<int32_t>(0x8000000E);
inline constexpr auto error_illegal_state_change = static_cast<int32_t>(0x8000000D);
inline constexpr auto error_illegal_delegate_assignment = static_cast<int32_t>(0x80000018);
inline constexpr auto error_canceled = static_cast<int32_t>(0x800704C7);
inline constexpr auto error_bad_alloc = static_cast<int32_t>(0x8007000E);
inline constexpr auto error_not_initialized = static_cast<int32_t>(0x800401F0);
inline constexpr auto error_pointer = static_cast<int32_t>(0x80004003);
inline constexpr auto error_disconnected = static_cast<int32_t>(0x80010108);
inline constexpr auto error_server_unavailable = static_cast<int32_t>(0x800706BA);

template <>
struct category<hresult>
{
    using type = struct_category<int32_t>;
};
template <>
inline constexpr std::wstring_view name_v<hresult>{L"Windows.Foundation.HResult"};

} // namespace impl

// The exception of the result code's kind: see error.h.
[[noreturn]] void throw_hresult(hresult result);

inline hresult check_hresult(hresult result)
{
    if (result < 0)
    {
        throw_hresult(result);
    }
    return result;
}

template <typename... Expected>
void check_hresult_allow(hresult result, Expected... expected)
{
    if (result < 0 && ((result != static_cast<hresult>(expected)) && ...))
    {
        throw_hresult(result);
    }
}

struct event_token
{
    int64_t value{};

    constexpr explicit operator bool() const noexcept { return value != 0; }
    friend constexpr bool operator==(event_token left, event_token right) noexcept = default;
};

namespace impl
{

template <>
struct category<event_token>
{
    using type = struct_category<int64_t>;
};
template <>
inline constexpr std::wstring_view name_v<event_token>{L"Windows.Foundation.EventRegistrationToken"};

} // namespace impl

} // namespace winrt
