#pragma once
#include "tests/unit/projection/TestPlatform.h"

#include <winrt/Windows.Foundation.h>

namespace test
{

// The platform's class of boxes. It makes no arrays.
struct PropertyValues : winrt::implements<PropertyValues, winrt::Windows::Foundation::IPropertyValueStatics>
{
    using Object = winrt::Windows::Foundation::IInspectable;
    template <typename T>
    using Values = winrt::array_view<T const>;

    template <typename T>
    static Object Box(T const& value)
    {
        return winrt::make<winrt::impl::reference<T>>(value);
    }
    [[noreturn]] static Object NoArrays() { throw winrt::hresult_not_implemented(); }

    Object CreateEmpty() const { return nullptr; }
    Object CreateUInt8(uint8_t value) const { return Box(value); }
    Object CreateInt16(int16_t value) const { return Box(value); }
    Object CreateUInt16(uint16_t value) const { return Box(value); }
    Object CreateInt32(int32_t value) const { return Box(value); }
    Object CreateUInt32(uint32_t value) const { return Box(value); }
    Object CreateInt64(int64_t value) const { return Box(value); }
    Object CreateUInt64(uint64_t value) const { return Box(value); }
    Object CreateSingle(float value) const { return Box(value); }
    Object CreateDouble(double value) const { return Box(value); }
    Object CreateChar16(char16_t value) const { return Box(value); }
    Object CreateBoolean(bool value) const { return Box(value); }
    Object CreateString(winrt::hstring const& value) const { return Box(value); }
    Object CreateInspectable(Object const& value) const { return value; }
    Object CreateGuid(winrt::guid const& value) const { return Box(value); }
    Object CreateDateTime(winrt::Windows::Foundation::DateTime value) const { return Box(value); }
    Object CreateTimeSpan(winrt::Windows::Foundation::TimeSpan value) const { return Box(value); }
    Object CreatePoint(winrt::Windows::Foundation::Point const& value) const { return Box(value); }
    Object CreateSize(winrt::Windows::Foundation::Size const& value) const { return Box(value); }
    Object CreateRect(winrt::Windows::Foundation::Rect const& value) const { return Box(value); }

    Object CreateUInt8Array(Values<uint8_t>) const { return NoArrays(); }
    Object CreateInt16Array(Values<int16_t>) const { return NoArrays(); }
    Object CreateUInt16Array(Values<uint16_t>) const { return NoArrays(); }
    Object CreateInt32Array(Values<int32_t>) const { return NoArrays(); }
    Object CreateUInt32Array(Values<uint32_t>) const { return NoArrays(); }
    Object CreateInt64Array(Values<int64_t>) const { return NoArrays(); }
    Object CreateUInt64Array(Values<uint64_t>) const { return NoArrays(); }
    Object CreateSingleArray(Values<float>) const { return NoArrays(); }
    Object CreateDoubleArray(Values<double>) const { return NoArrays(); }
    Object CreateChar16Array(Values<char16_t>) const { return NoArrays(); }
    Object CreateBooleanArray(Values<bool>) const { return NoArrays(); }
    Object CreateStringArray(Values<winrt::hstring>) const { return NoArrays(); }
    Object CreateInspectableArray(Values<Object>) const { return NoArrays(); }
    Object CreateGuidArray(Values<winrt::guid>) const { return NoArrays(); }
    Object CreateDateTimeArray(Values<winrt::Windows::Foundation::DateTime>) const { return NoArrays(); }
    Object CreateTimeSpanArray(Values<winrt::Windows::Foundation::TimeSpan>) const { return NoArrays(); }
    Object CreatePointArray(Values<winrt::Windows::Foundation::Point>) const { return NoArrays(); }
    Object CreateSizeArray(Values<winrt::Windows::Foundation::Size>) const { return NoArrays(); }
    Object CreateRectArray(Values<winrt::Windows::Foundation::Rect>) const { return NoArrays(); }
};

} // namespace test
