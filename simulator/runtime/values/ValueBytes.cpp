#include "simulator/runtime/values/ValueBytes.h"

#include "simulator/protocol/Encoding.h"
#include "simulator/runtime/values/ArrayValue.h"
#include "simulator/runtime/values/ValueSet.h"

#include <algorithm>
#include <windows.h>

namespace sim
{

namespace
{

using Foundation::IPropertyValue;
using Foundation::PropertyType;

template <typename T>
std::string BytesOf(winrt::com_array<T> const& elements)
{
    if constexpr (std::is_same_v<T, winrt::hstring>)
    {
        return Encode(std::vector<std::wstring>(elements.begin(), elements.end()));
    }
    else
    {
        static_assert(std::is_trivially_copyable_v<T>);
        return {reinterpret_cast<char const*>(elements.data()), elements.size() * sizeof(T)};
    }
}

template <typename T>
winrt::com_array<T> ElementsFrom(std::string bytes) // NOLINT(performance-unnecessary-value-param): it corrects flags
{
    if constexpr (std::is_same_v<T, winrt::hstring>)
    {
        auto const texts = Decode<std::vector<std::wstring>>(bytes);
        return {texts.begin(), texts.end()};
    }
    else
    {
        if (bytes.size() % sizeof(T) != 0)
        {
            throw winrt::hresult_invalid_argument();
        }
        if constexpr (std::is_same_v<T, bool>)
        {
            std::ranges::replace_if(bytes, [](char flag) { return flag != 0; }, '\1'); // no other bool is one
        }
        winrt::com_array<T> elements(static_cast<std::uint32_t>(bytes.size() / sizeof(T)));
        std::ranges::copy(bytes, reinterpret_cast<char*>(elements.data()));
        return elements;
    }
}

// Fills in the bytes if the value is a T or an array of these.
template <typename T>
bool TryEncode(IPropertyValue const& value, SetEntry& entry)
{
    auto const type = value.Type();
    if (type == winrt::impl::property_type_of<T>())
    {
        entry.bytes = BytesOf(winrt::com_array<T>(1, value.as<Foundation::IReference<T>>().Value()));
    }
    else if (type == ArrayTypeOf<T>())
    {
        entry.bytes = BytesOf(value.as<Foundation::IReferenceArray<T>>().Value());
    }
    else
    {
        return false;
    }
    return true;
}

// The reverse.
template <typename T>
bool TryDecode(SetEntry const& entry, IInspectable& value)
{
    auto const type = static_cast<PropertyType>(entry.type);
    if (type == ArrayTypeOf<T>())
    {
        value = winrt::make<ArrayValue<T>>(ElementsFrom<T>(entry.bytes));
    }
    else if (type == winrt::impl::property_type_of<T>())
    {
        auto const elements = ElementsFrom<T>(entry.bytes);
        value = elements.size() == 1 ? winrt::make<winrt::impl::reference<T>>(elements[0])
                                     : throw winrt::hresult_invalid_argument();
    }
    return static_cast<bool>(value);
}

template <typename... T>
struct Types
{
    static bool TryEncode(IPropertyValue const& value, SetEntry& entry)
    {
        return (sim::TryEncode<T>(value, entry) || ...);
    }

    static bool TryDecode(SetEntry const& entry, IInspectable& value)
    {
        return (sim::TryDecode<T>(entry, value) || ...);
    }
};

// All that travel, and so do arrays of them.
using TravellingTypes =
    Types<std::uint8_t, std::int16_t, std::uint16_t, std::int32_t, std::uint32_t, std::int64_t, std::uint64_t, float,
          double, char16_t, bool, winrt::hstring, winrt::guid, Foundation::DateTime, Foundation::TimeSpan,
          Foundation::Point, Foundation::Size, Foundation::Rect>;

} // namespace

SetEntry EntryOf(std::wstring_view name, IInspectable const& value)
{
    SetEntry entry{std::wstring(name)};
    if (auto const set = value.try_as<Collections::IPropertySet>())
    {
        entry.type = SetEntry::ofSet;
        entry.bytes = BytesOf(set);
    }
    else if (auto const property = value.try_as<IPropertyValue>())
    {
        entry.type = static_cast<std::int32_t>(property.Type());
        if (!TravellingTypes::TryEncode(property, entry))
        {
            throw winrt::hresult_error(HRESULT_FROM_WIN32(ERROR_UNSUPPORTED_TYPE));
        }
    }
    else if (value)
    {
        throw winrt::hresult_error(HRESULT_FROM_WIN32(ERROR_UNSUPPORTED_TYPE));
    }
    return entry;
}

IInspectable ValueFrom(SetEntry const& entry)
{
    if (entry.type == SetEntry::ofSet && !entry.bytes.empty())
    {
        return SetFrom(entry.bytes);
    }
    IInspectable value;
    auto const isNull = entry.type == 0 && entry.bytes.empty();
    return isNull || TravellingTypes::TryDecode(entry, value) ? value : throw winrt::hresult_invalid_argument();
}

std::string BytesOf(Collections::IPropertySet const& set)
{
    SetEntries entries;
    for (auto const& entry : set)
    {
        entries.push_back(EntryOf(entry.Key(), entry.Value()));
    }
    return Encode(entries);
}

Collections::ValueSet SetFrom(std::string_view bytes)
try
{
    NamedValues::Entries entries;
    for (auto const& entry : bytes.empty() ? SetEntries() : Decode<SetEntries>(bytes))
    {
        entries.emplace_back(entry.name, ValueFrom(entry));
    }
    return winrt::make<ValueSet>(std::move(entries));
}
catch (Error const& error)
{
    throw winrt::hresult_invalid_argument(winrt::hstring(error.Message()));
}

} // namespace sim
