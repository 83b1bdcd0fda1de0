// DateTime and TimeSpan: 100-nanosecond units, dates since 1 January 1601 UTC.
#pragma once
#include "winrt/base/activation.h"

namespace winrt
{

struct clock;

namespace Windows::Foundation
{
using TimeSpan = std::chrono::duration<int64_t, std::ratio<1, 10'000'000>>;
using DateTime = std::chrono::time_point<clock, TimeSpan>;
} // namespace Windows::Foundation

struct clock
{
    using rep = int64_t;
    using period = Windows::Foundation::TimeSpan::period;
    using duration = Windows::Foundation::TimeSpan;
    using time_point = Windows::Foundation::DateTime;
    static constexpr bool is_steady = false;

    static time_point now() noexcept
    {
        file_time time;
        impl::os::GetSystemTimeAsFileTime(&time);
        return from_file_time(time);
    }
    static time_point from_file_time(file_time const& time) noexcept
    {
        return time_point(duration(static_cast<int64_t>(time.value)));
    }
    static file_time to_file_time(time_point time) noexcept
    {
        return {static_cast<uint64_t>(time.time_since_epoch().count())};
    }
    static time_t to_time_t(time_point time) noexcept
    {
        return std::chrono::duration_cast<std::chrono::seconds>(time - unix_epoch()).count();
    }
    static time_point from_time_t(time_t time) noexcept { return unix_epoch() + std::chrono::seconds(time); }

  private:
    static constexpr time_point unix_epoch() noexcept { return time_point(duration(116'444'736'000'000'000)); }
};

namespace impl
{

template <>
struct abi<Windows::Foundation::TimeSpan>
{
    using type = int64_t;
};
template <>
struct category<Windows::Foundation::TimeSpan>
{
    using type = struct_category<int64_t>;
};
template <>
inline constexpr std::wstring_view name_v<Windows::Foundation::TimeSpan>{L"Windows.Foundation.TimeSpan"};

template <>
struct abi<Windows::Foundation::DateTime>
{
    using type = int64_t;
};
template <>
struct category<Windows::Foundation::DateTime>
{
    using type = struct_category<int64_t>;
};
template <>
inline constexpr std::wstring_view name_v<Windows::Foundation::DateTime>{L"Windows.Foundation.DateTime"};

// What a method of a generic interface takes for its T.
template <typename T>
struct param
{
    using type = T;
};
template <>
struct param<hstring>
{
    using type = winrt::param::hstring;
};
template <typename T>
using param_type = typename param<T>::type;

} // namespace impl

} // namespace winrt
