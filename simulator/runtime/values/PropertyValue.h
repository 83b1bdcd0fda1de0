#pragma once
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/NotImplemented.h"
#include "simulator/runtime/Runtime.h"
#include "simulator/runtime/values/ArrayValue.h"

#include <winrt/Windows.Foundation.h>

namespace sim
{

// The static members of Windows.Foundation.PropertyValue, which make objects of values.
struct PropertyValueFactory
    : winrt::implements<PropertyValueFactory, IActivationFactory, Foundation::IPropertyValueStatics>
{
    template <typename T>
    using Values = winrt::array_view<T const>;

    NotImplemented ActivateInstance() const { return {}; }

    IInspectable CreateString(winrt::hstring const& value) const
    {
        return StruckByNull(L"PropertyValue.CreateString") ? nullptr : Box(value);
    }

    // clang-format off
    IInspectable CreateEmpty() const { return nullptr; }
    IInspectable CreateUInt8(std::uint8_t value) const { return Box(value); }
    IInspectable CreateInt16(std::int16_t value) const { return Box(value); }
    IInspectable CreateUInt16(std::uint16_t value) const { return Box(value); }
    IInspectable CreateInt32(std::int32_t value) const { return Box(value); }
    IInspectable CreateUInt32(std::uint32_t value) const { return Box(value); }
    IInspectable CreateInt64(std::int64_t value) const { return Box(value); }
    IInspectable CreateUInt64(std::uint64_t value) const { return Box(value); }
    IInspectable CreateSingle(float value) const { return Box(value); }
    IInspectable CreateDouble(double value) const { return Box(value); }
    IInspectable CreateChar16(char16_t value) const { return Box(value); }
    IInspectable CreateBoolean(bool value) const { return Box(value); }
    IInspectable CreateInspectable(IInspectable const& value) const { return value; }
    IInspectable CreateGuid(winrt::guid const& value) const { return Box(value); }
    IInspectable CreateDateTime(Foundation::DateTime value) const { return Box(value); }
    IInspectable CreateTimeSpan(Foundation::TimeSpan value) const { return Box(value); }
    IInspectable CreatePoint(Foundation::Point const& value) const { return Box(value); }
    IInspectable CreateSize(Foundation::Size const& value) const { return Box(value); }
    IInspectable CreateRect(Foundation::Rect const& value) const { return Box(value); }

    IInspectable CreateUInt8Array(Values<std::uint8_t> values) const { return BoxArray(values); }
    IInspectable CreateInt16Array(Values<std::int16_t> values) const { return BoxArray(values); }
    IInspectable CreateUInt16Array(Values<std::uint16_t> values) const { return BoxArray(values); }
    IInspectable CreateInt32Array(Values<std::int32_t> values) const { return BoxArray(values); }
    IInspectable CreateUInt32Array(Values<std::uint32_t> values) const { return BoxArray(values); }
    IInspectable CreateInt64Array(Values<std::int64_t> values) const { return BoxArray(values); }
    IInspectable CreateUInt64Array(Values<std::uint64_t> values) const { return BoxArray(values); }
    IInspectable CreateSingleArray(Values<float> values) const { return BoxArray(values); }
    IInspectable CreateDoubleArray(Values<double> values) const { return BoxArray(values); }
    IInspectable CreateChar16Array(Values<char16_t> values) const { return BoxArray(values); }
    IInspectable CreateBooleanArray(Values<bool> values) const { return BoxArray(values); }
    IInspectable CreateStringArray(Values<winrt::hstring> values) const { return BoxArray(values); }
    IInspectable CreateInspectableArray(Values<IInspectable> values) const { return BoxArray(values); }
    IInspectable CreateGuidArray(Values<winrt::guid> values) const { return BoxArray(values); }
    IInspectable CreateDateTimeArray(Values<Foundation::DateTime> values) const { return BoxArray(values); }
    IInspectable CreateTimeSpanArray(Values<Foundation::TimeSpan> values) const { return BoxArray(values); }
    IInspectable CreatePointArray(Values<Foundation::Point> values) const { return BoxArray(values); }
    IInspectable CreateSizeArray(Values<Foundation::Size> values) const { return BoxArray(values); }
    IInspectable CreateRectArray(Values<Foundation::Rect> values) const { return BoxArray(values); }
    // clang-format on

  private:
    template <typename T>
    static IInspectable Box(T const& value)
    {
        return winrt::make<winrt::impl::reference<T>>(value);
    }

    template <typename T>
    static IInspectable BoxArray(Values<T> values)
    {
        return winrt::make<ArrayValue<T>>(values);
    }
};

} // namespace sim
