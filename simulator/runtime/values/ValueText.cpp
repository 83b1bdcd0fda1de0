#include "simulator/runtime/values/ValueText.h"

#include "simulator/base/Error.h"
#include "simulator/protocol/SetText.h"
#include "simulator/runtime/values/ArrayOf.h"
#include "simulator/runtime/values/ArrayValue.h"
#include "simulator/runtime/values/ScalarText.h"
#include "simulator/runtime/values/ValueSet.h"

#include <algorithm>
#include <array>
#include <cstring>
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

// Arrays of texts are lists; all others travel as they lie in memory.
template <typename T>
std::wstring ArrayText(IPropertyValue const& value)
{
    auto const array = ArrayOf<T>(value);
    if constexpr (!std::is_same_v<T, winrt::hstring>)
    {
        static_assert(std::is_trivially_copyable_v<T>);
        return PackBytes({reinterpret_cast<char const*>(array.data()), array.size() * sizeof(T)});
    }
    else
    {
        std::wstring list;
        for (auto const& element : array)
        {
            AppendText(list, element);
        }
        return list;
    }
}

IInspectable ArrayOfTexts(std::wstring_view list)
{
    std::vector<winrt::hstring> values;
    while (!list.empty())
    {
        values.emplace_back(TakeText(list));
    }
    return winrt::make<ArrayValue<winrt::hstring>>(winrt::array_view<winrt::hstring const>(values));
}

template <typename T>
IInspectable ArrayFrom(std::wstring_view text)
{
    if constexpr (std::is_same_v<T, winrt::hstring>)
    {
        return ArrayOfTexts(text);
    }
    else
    {
        auto bytes = UnpackBytes(text);
        if (bytes.size() % sizeof(T) != 0)
        {
            throw winrt::hresult_invalid_argument();
        }
        if constexpr (std::is_same_v<T, bool>)
        {
            std::ranges::replace_if(bytes, [](char byte) { return byte != 0; }, '\1'); // no other bool is one
        }
        winrt::com_array<T> const array(static_cast<std::uint32_t>(bytes.size() / sizeof(T)));
        std::memcpy(array.data(), bytes.data(), bytes.size());
        return winrt::make<ArrayValue<T>>(winrt::array_view<T const>(array.data(), array.size()));
    }
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
        text = {std::wstring(scalar.name) + std::wstring(arraySuffix), ArrayText<T>(value)};
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
