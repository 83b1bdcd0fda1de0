#include "simulator/runtime/values/ValueText.h"

#include "simulator/model/Error.h"
#include "simulator/model/SetText.h"
#include "simulator/runtime/values/ArrayOf.h"
#include "simulator/runtime/values/ArrayValue.h"
#include "simulator/runtime/values/ScalarText.h"
#include "simulator/runtime/values/ValueSet.h"

#include <array>
#include <tuple>
#include <windows.h>

namespace sim
{

namespace
{

using Foundation::IPropertyValue;

constexpr wchar_t nullType[] = L"Null";
constexpr wchar_t setType[] = L"Set";
constexpr std::wstring_view arraySuffix = L"[]";

template <typename T>
struct ScalarType
{
    using Type = T;
    static constexpr auto type = winrt::impl::property_type_of<T>();

    std::wstring_view name;
};

// All that can be told in text, and so can arrays of it.
constexpr std::tuple scalarTypes = {
    ScalarType<std::uint8_t>{L"UInt8"},
    ScalarType<std::int16_t>{L"Int16"},
    ScalarType<std::uint16_t>{L"UInt16"},
    ScalarType<std::int32_t>{L"Int32"},
    ScalarType<std::uint32_t>{L"UInt32"},
    ScalarType<std::int64_t>{L"Int64"},
    ScalarType<std::uint64_t>{L"UInt64"},
    ScalarType<float>{L"Single"},
    ScalarType<double>{L"Double"},
    ScalarType<char16_t>{L"Char16"},
    ScalarType<bool>{L"Boolean"},
    ScalarType<winrt::hstring>{L"String"},
    ScalarType<winrt::guid>{L"Guid"},
    ScalarType<Foundation::DateTime>{L"DateTime"},
    ScalarType<Foundation::TimeSpan>{L"TimeSpan"},
    ScalarType<Foundation::Point>{L"Point"},
    ScalarType<Foundation::Size>{L"Size"},
    ScalarType<Foundation::Rect>{L"Rect"},
};

template <typename T>
std::wstring ListText(IPropertyValue const& value)
{
    std::wstring list;
    for (auto const& element : ArrayOf<T>(value))
    {
        AppendText(list, ScalarText(element));
    }
    return list;
}

template <typename T>
IInspectable ArrayFrom(std::wstring_view list)
{
    std::vector<T> values;
    while (!list.empty())
    {
        values.push_back(ScalarFrom<T>(TakeText(list)));
    }
    // vector<bool> is no array.
    winrt::com_array<T> const array(values.begin(), values.end());
    return winrt::make<ArrayValue<T>>(winrt::array_view<T const>(array.data(), array.size()));
}

// Whether the value is of this type or an array of it; then `text` is its text.
template <typename T>
bool TryText(ScalarType<T> const& scalar, IPropertyValue const& value, ValueText& text)
{
    auto const type = value.Type();
    if (type == scalar.type)
    {
        text = {std::wstring(scalar.name), ScalarText(value.as<Foundation::IReference<T>>().Value())};
        return true;
    }
    if (type == ArrayTypeOf<T>())
    {
        text = {std::wstring(scalar.name) + std::wstring(arraySuffix), ListText<T>(value)};
        return true;
    }
    return false;
}

// The opposite.
template <typename T>
bool TryValue(ScalarType<T> const& scalar, std::wstring_view type, std::wstring_view text, IInspectable& value)
{
    if (!type.starts_with(scalar.name))
    {
        return false;
    }
    auto const suffix = type.substr(scalar.name.size());
    if (suffix.empty())
    {
        value = winrt::make<winrt::impl::reference<T>>(ScalarFrom<T>(text));
    }
    else if (suffix == arraySuffix)
    {
        value = ArrayFrom<T>(text);
    }
    return static_cast<bool>(value);
}

} // namespace

ValueText TextOfValue(IInspectable const& value)
{
    if (!value)
    {
        return {nullType, {}};
    }
    if (auto const set = value.try_as<Collections::IPropertySet>())
    {
        return {setType, TextOf(set)};
    }
    auto const property = value.try_as<IPropertyValue>();
    ValueText text;
    auto const isKnown =
        property &&
        std::apply([&](auto const&... type) { return (TryText(type, property, text) || ...); }, scalarTypes);
    return isKnown ? text : throw winrt::hresult_error(HRESULT_FROM_WIN32(ERROR_UNSUPPORTED_TYPE));
}

IInspectable ValueFrom(std::wstring_view type, std::wstring_view text)
{
    if (type == nullType)
    {
        return nullptr;
    }
    if (type == setType)
    {
        return SetFrom(text);
    }
    IInspectable value;
    std::apply([&](auto const&... scalar) { return (TryValue(scalar, type, text, value) || ...); }, scalarTypes);
    return value ? value : throw winrt::hresult_invalid_argument();
}

std::wstring TextOf(Collections::IPropertySet const& set)
{
    std::wstring text;
    for (auto const& entry : set)
    {
        auto const value = TextOfValue(entry.Value());
        AppendEntry(text, {entry.Key(), value.type, value.text});
    }
    return text;
}

Collections::ValueSet SetFrom(std::wstring_view text)
try
{
    auto const set = winrt::make_self<ValueSet>();
    for (auto const& entry : ParseSet(text))
    {
        set->Add(winrt::hstring(entry.name), ValueFrom(entry.type, entry.value));
    }
    return set.as<Collections::ValueSet>();
}
catch (Error const& error)
{
    throw winrt::hresult_invalid_argument(winrt::hstring(error.Message()));
}

} // namespace sim
