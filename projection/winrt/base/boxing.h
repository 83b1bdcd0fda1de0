// Values as objects: box_value, unbox_value.
#pragma once
#include "winrt/base/reference.h"

namespace winrt
{

namespace impl
{

// The platform makes the object where it can: its own boxes may travel to other processes.
template <typename T>
Windows::Foundation::IInspectable box(T const& value)
{
    using Windows::Foundation::PropertyType;
    using Windows::Foundation::PropertyValue;
    constexpr auto type = property_type_of<T>();
    // clang-format off
    if constexpr (type == PropertyType::UInt8) { return PropertyValue::CreateUInt8(value); }
    else if constexpr (type == PropertyType::Int16) { return PropertyValue::CreateInt16(value); }
    else if constexpr (type == PropertyType::UInt16) { return PropertyValue::CreateUInt16(value); }
    else if constexpr (type == PropertyType::Int32) { return PropertyValue::CreateInt32(value); }
    else if constexpr (type == PropertyType::UInt32) { return PropertyValue::CreateUInt32(value); }
    else if constexpr (type == PropertyType::Int64) { return PropertyValue::CreateInt64(value); }
    else if constexpr (type == PropertyType::UInt64) { return PropertyValue::CreateUInt64(value); }
    else if constexpr (type == PropertyType::Single) { return PropertyValue::CreateSingle(value); }
    else if constexpr (type == PropertyType::Double) { return PropertyValue::CreateDouble(value); }
    else if constexpr (type == PropertyType::Char16) { return PropertyValue::CreateChar16(value); }
    else if constexpr (type == PropertyType::Boolean) { return PropertyValue::CreateBoolean(value); }
    else if constexpr (type == PropertyType::Guid) { return PropertyValue::CreateGuid(value); }
    else if constexpr (type == PropertyType::DateTime) { return PropertyValue::CreateDateTime(value); }
    else if constexpr (type == PropertyType::TimeSpan) { return PropertyValue::CreateTimeSpan(value); }
    else if constexpr (type == PropertyType::Point) { return PropertyValue::CreatePoint(value); }
    else if constexpr (type == PropertyType::Size) { return PropertyValue::CreateSize(value); }
    else if constexpr (type == PropertyType::Rect) { return PropertyValue::CreateRect(value); }
    else { return make<reference<T>>(value); }
    // clang-format on
}

} // namespace impl

inline Windows::Foundation::IInspectable box_value(param::hstring const& value)
{
    return Windows::Foundation::PropertyValue::CreateString(value);
}

template <typename T>
    requires(!std::is_convertible_v<T const&, param::hstring>)
Windows::Foundation::IInspectable box_value(T const& value)
{
    if constexpr (std::is_base_of_v<Windows::Foundation::IInspectable, T>)
    {
        return value;
    }
    else
    {
        return impl::box(value);
    }
}

// Throws hresult_no_interface when the object is null or holds something else.
template <typename T>
T unbox_value(Windows::Foundation::IInspectable const& value)
{
    if constexpr (std::is_base_of_v<Windows::Foundation::IInspectable, T>)
    {
        return value.as<T>();
    }
    else
    {
        if (!value)
        {
            throw hresult_no_interface();
        }
        return value.as<Windows::Foundation::IReference<T>>().Value();
    }
}

template <typename T>
T unbox_value_or(Windows::Foundation::IInspectable const& value, T const& otherwise)
{
    auto const found = value.try_as<Windows::Foundation::IReference<T>>();
    return found ? found.Value() : otherwise;
}

template <typename T>
hstring unbox_value_or(Windows::Foundation::IInspectable const& value, param::hstring const& otherwise)
    requires std::is_same_v<T, hstring>
{
    auto const found = value.try_as<Windows::Foundation::IReference<hstring>>();
    return found ? found.Value() : static_cast<hstring const&>(otherwise);
}

} // namespace winrt
