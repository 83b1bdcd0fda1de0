// Value sets as they travel. Any bytes are refused, or become a set that travels on unchanged. A set made of values
// comes back with these values.
#include "fuzz/Choices.h"
#include "fuzz/Demand.h"
#include "simulator/base/Error.h"
#include "simulator/protocol/Encoding.h"
#include "simulator/runtime/Runtime.h"
#include "simulator/runtime/values/ArrayValue.h"
#include "simulator/runtime/values/ValueBytes.h"
#include "simulator/runtime/values/ValueSet.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <winrt/Windows.Foundation.h>

using namespace fuzz;
using sim::IInspectable;

namespace
{

// A value, and the check that another one is equal to it.
struct Value
{
    IInspectable object;
    std::function<bool(IInspectable const&)> equals;
};

winrt::hstring SomeText(Choices& choices)
{
    return winrt::hstring(choices.Units(5));
}

template <typename T>
using Bytes = std::array<std::uint8_t, sizeof(T)>;

template <typename T>
T Some(Choices& choices)
{
    if constexpr (std::is_same_v<T, winrt::hstring>)
    {
        return SomeText(choices);
    }
    else if constexpr (std::is_same_v<T, bool>)
    {
        return choices.Flag(); // no other bytes are one
    }
    else
    {
        Bytes<T> bytes;
        std::ranges::generate(bytes, [&] { return choices.Byte(); });
        return std::bit_cast<T>(bytes);
    }
}

// To the bit: a number that is none is not equal to itself.
template <typename T>
bool AreSame(T const& one, T const& other)
{
    if constexpr (std::is_same_v<T, winrt::hstring>)
    {
        return one == other;
    }
    else
    {
        return std::bit_cast<Bytes<T>>(one) == std::bit_cast<Bytes<T>>(other);
    }
}

template <typename T>
Value SomeSingle(Choices& choices)
{
    auto const value = Some<T>(choices);
    return {winrt::make<winrt::impl::reference<T>>(value), [value](IInspectable const& other) {
                auto const reference = other.try_as<winrt::Windows::Foundation::IReference<T>>();
                return reference && AreSame(reference.Value(), value);
            }};
}

template <typename T>
Value SomeArray(Choices& choices)
{
    winrt::com_array<T> values(choices.Below(4));
    std::ranges::generate(values, [&] { return Some<T>(choices); });
    std::vector<T> const expected(values.begin(), values.end());
    return {winrt::make<sim::ArrayValue<T>>(std::move(values)), [expected](IInspectable const& other) {
                auto const reference = other.try_as<winrt::Windows::Foundation::IReferenceArray<T>>();
                return reference && std::ranges::equal(reference.Value(), expected, AreSame<T>);
            }};
}

template <typename... T>
struct Types
{
    using Make = Value (*)(Choices&);
    static constexpr std::array<Make, sizeof...(T)> single{SomeSingle<T>...};
    static constexpr std::array<Make, sizeof...(T)> array{SomeArray<T>...};
};

// All of which a value set may have one, or an array.
using ValueTypes =
    Types<std::uint8_t, std::int16_t, std::uint16_t, std::int32_t, std::uint32_t, std::int64_t, std::uint64_t, float,
          double, char16_t, bool, winrt::hstring, winrt::guid, winrt::Windows::Foundation::DateTime,
          winrt::Windows::Foundation::TimeSpan, winrt::Windows::Foundation::Point, winrt::Windows::Foundation::Size,
          winrt::Windows::Foundation::Rect>;

Value SomeSet(Choices& choices, int depth);

Value SomeValue(Choices& choices, int depth)
{
    switch (choices.Below(8))
    {
    case 0:
        return {nullptr, [](IInspectable const& other) { return !other; }};
    case 1:
        return depth > 0 ? SomeSet(choices, depth - 1) : SomeSingle<winrt::hstring>(choices);
    case 2:
    case 3:
    case 4:
        return choices.OneOf(ValueTypes::array)(choices);
    default:
        return choices.OneOf(ValueTypes::single)(choices);
    }
}

Value SomeSet(Choices& choices, int depth)
{
    auto const set = winrt::make<sim::ValueSet>();
    std::vector<std::pair<winrt::hstring, Value>> values;
    for (auto count = choices.Below(5); count > 0; --count)
    {
        auto name = SomeText(choices);
        auto const value = SomeValue(choices, depth);
        set.as<sim::Collections::IPropertySet>().Insert(name, value.object);
        std::erase_if(values, [&](auto const& earlier) { return earlier.first == name; });
        values.emplace_back(std::move(name), value);
    }
    return {set, [values](IInspectable const& other) {
                auto const map = other.try_as<sim::Collections::IPropertySet>();
                return map && map.Size() == values.size() && std::ranges::all_of(values, [&](auto const& entry) {
                           return map.HasKey(entry.first) && entry.second.equals(map.Lookup(entry.first));
                       });
            }};
}

void CheckMade(Choices& choices)
{
    auto const set = SomeSet(choices, 3);
    Demand(set.equals(set.object), "the set made");
    Demand(set.equals(sim::SetFrom(sim::BytesOf(set.object.as<sim::Collections::IPropertySet>()))),
           "the set that has travelled");
}

// For people, each entry has a type and a value, or is no value of its type.
void CheckReadable(std::string_view bytes)
{
    try
    {
        for (auto const& entry : sim::Decode<sim::SetEntries>(bytes))
        {
            sim::ReadableValue(entry);
            Demand(!sim::TypeName(entry).empty(), "the name of a type");
        }
    }
    catch (sim::Error const&)
    {
    }
}

void CheckBytes(std::string_view bytes)
{
    CheckReadable(bytes);
    std::string travelled;
    try
    {
        travelled = sim::BytesOf(sim::SetFrom(bytes));
    }
    catch (winrt::hresult_invalid_argument const&)
    {
        return;
    }
    Demand(sim::BytesOf(sim::SetFrom(travelled)) == travelled, "the set that travels on");
    Demand(travelled.size() == std::max<std::size_t>(bytes.size(), 4), "the size of the set");
}

} // namespace

// The values are part of the platform, whose calls a test can make fail. Here none does.
bool sim::InjectFault(std::wstring_view /*call*/)
{
    return false;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Choices choices({data, size});
    if (choices.Flag())
    {
        CheckMade(choices);
        return 0;
    }
    auto const rest = choices.Rest();
    CheckBytes({reinterpret_cast<char const*>(rest.data()), rest.size()});
    return 0;
}
