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

#include <bit>
#include <functional>
#include <winrt/Windows.Foundation.h>

using namespace fuzz;
using sim::IInspectable;
using winrt::Windows::Foundation::IReferenceArray;

namespace
{

// A value, and the check that another one is equal to it.
struct Value
{
    IInspectable object;
    std::function<bool(IInspectable const&)> equals;
};

template <typename T>
Value Single(T const& value)
{
    return {winrt::make<winrt::impl::reference<T>>(value), [value](IInspectable const& other) {
                auto const reference = other.try_as<winrt::Windows::Foundation::IReference<T>>();
                return reference && reference.Value() == value;
            }};
}

template <typename T>
Value Array(std::vector<T> const& values)
{
    return {winrt::make<sim::ArrayValue<T>>(winrt::com_array<T>(values.begin(), values.end())),
            [values](IInspectable const& other) {
                auto const reference = other.try_as<IReferenceArray<T>>();
                return reference && std::ranges::equal(reference.Value(), values);
            }};
}

std::uint64_t LongNumber(Choices& choices)
{
    auto const high = choices.Number();
    return std::uint64_t{high} << 32 | choices.Number();
}

winrt::hstring SomeText(Choices& choices)
{
    return winrt::hstring(choices.Units(5));
}

template <typename T>
std::vector<T> Several(Choices& choices, T (*make)(Choices&))
{
    std::vector<T> values;
    for (auto count = choices.Below(4); count > 0; --count)
    {
        values.push_back(make(choices));
    }
    return values;
}

Value SomeSet(Choices& choices, int depth);

Value SomeValue(Choices& choices, int depth)
{
    switch (choices.Below(16))
    {
    case 0:
        return {nullptr, [](IInspectable const& other) { return !other; }};
    case 1:
        return Single(choices.Byte());
    case 2:
        return Single(static_cast<std::int16_t>(choices.Number()));
    case 3:
        return Single(static_cast<std::int32_t>(choices.Number()));
    case 4:
        return Single(static_cast<std::int64_t>(LongNumber(choices)));
    case 5:
        return Single(choices.Number() / 7.0);
    case 6:
        return Single(static_cast<char16_t>(choices.Number()));
    case 7:
        return Single(choices.Flag());
    case 8:
        return Single(std::bit_cast<winrt::guid>(std::array{LongNumber(choices), LongNumber(choices)}));
    case 9:
        return Single(winrt::Windows::Foundation::TimeSpan(static_cast<std::int64_t>(LongNumber(choices))));
    case 10:
        return Array(Several<std::uint8_t>(choices, [](Choices& from) { return from.Byte(); }));
    case 11:
        return Array(Several<std::uint64_t>(choices, LongNumber));
    case 12:
        return Array(Several<winrt::hstring>(choices, SomeText));
    case 13:
    case 14:
        return depth > 0 ? SomeSet(choices, depth - 1) : Single(SomeText(choices));
    default:
        return Single(SomeText(choices));
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
