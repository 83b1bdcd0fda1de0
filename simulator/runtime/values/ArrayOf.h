#pragma once
#include "simulator/runtime/Namespaces.h"

#include <winrt/Windows.Foundation.h>

namespace sim
{

// The array that a value holds, from any maker.
template <typename T>
winrt::com_array<T> ArrayOf(Foundation::IPropertyValue const& value)
{
    winrt::com_array<T> values;
    // clang-format off
    if constexpr (std::is_same_v<T, std::uint8_t>) { value.GetUInt8Array(values); }
    else if constexpr (std::is_same_v<T, std::int16_t>) { value.GetInt16Array(values); }
    else if constexpr (std::is_same_v<T, std::uint16_t>) { value.GetUInt16Array(values); }
    else if constexpr (std::is_same_v<T, std::int32_t>) { value.GetInt32Array(values); }
    else if constexpr (std::is_same_v<T, std::uint32_t>) { value.GetUInt32Array(values); }
    else if constexpr (std::is_same_v<T, std::int64_t>) { value.GetInt64Array(values); }
    else if constexpr (std::is_same_v<T, std::uint64_t>) { value.GetUInt64Array(values); }
    else if constexpr (std::is_same_v<T, float>) { value.GetSingleArray(values); }
    else if constexpr (std::is_same_v<T, double>) { value.GetDoubleArray(values); }
    else if constexpr (std::is_same_v<T, char16_t>) { value.GetChar16Array(values); }
    else if constexpr (std::is_same_v<T, bool>) { value.GetBooleanArray(values); }
    else if constexpr (std::is_same_v<T, winrt::hstring>) { value.GetStringArray(values); }
    else if constexpr (std::is_same_v<T, winrt::guid>) { value.GetGuidArray(values); }
    else if constexpr (std::is_same_v<T, Foundation::DateTime>) { value.GetDateTimeArray(values); }
    else if constexpr (std::is_same_v<T, Foundation::TimeSpan>) { value.GetTimeSpanArray(values); }
    else if constexpr (std::is_same_v<T, Foundation::Point>) { value.GetPointArray(values); }
    else if constexpr (std::is_same_v<T, Foundation::Size>) { value.GetSizeArray(values); }
    else if constexpr (std::is_same_v<T, Foundation::Rect>) { value.GetRectArray(values); }
    // clang-format on
    return values;
}

} // namespace sim
