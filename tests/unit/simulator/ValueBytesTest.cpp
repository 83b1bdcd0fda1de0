#include "simulator/runtime/values/ValueBytes.h"

#include "simulator/base/Error.h"
#include "simulator/base/Text.h"
#include "simulator/protocol/Encoding.h"
#include "tests/unit/simulator/BackgroundApp.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>

using namespace test;
using namespace winrt::Windows::Foundation;
using namespace std::string_literals;

namespace
{

class ValueBytes : public testing::Test
{
  protected:
    static IInspectable Travelled(IInspectable const& value)
    {
        return sim::SetFrom(sim::BytesOf(SetOf({{L"value", value}}))).Lookup(L"value");
    }

    template <typename T>
    static T TravelledAs(T const& value)
    {
        return winrt::unbox_value<T>(Travelled(winrt::box_value(value)));
    }

    template <typename T>
    static std::vector<T> TravelledArray(IInspectable const& array)
    {
        auto const values = Travelled(array).as<IReferenceArray<T>>().Value();
        return std::vector<T>(values.begin(), values.end());
    }

    sim::LocalDevice host;
};

} // namespace

TEST_F(ValueBytes, TellWholeNumbersOfAllSizes)
{
    EXPECT_EQ(TravelledAs<std::uint8_t>(255), 255);
    EXPECT_EQ(TravelledAs<std::int16_t>(-32768), -32768);
    EXPECT_EQ(TravelledAs<std::uint16_t>(65535), 65535);
    EXPECT_EQ(TravelledAs(std::numeric_limits<std::int32_t>::min()), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(TravelledAs(UINT32_MAX), UINT32_MAX);
    EXPECT_EQ(TravelledAs(std::numeric_limits<std::int64_t>::min()), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(TravelledAs(UINT64_MAX), UINT64_MAX);
    EXPECT_EQ(TravelledAs(u'\xD83D'), u'\xD83D');
    EXPECT_TRUE(TravelledAs(true));
    EXPECT_FALSE(TravelledAs(false));
}

TEST_F(ValueBytes, TellFloatingNumbersExactly)
{
    EXPECT_EQ(TravelledAs(0.1f), 0.1f);
    EXPECT_EQ(TravelledAs(0.1), 0.1);
    EXPECT_EQ(TravelledAs(std::numeric_limits<double>::denorm_min()), std::numeric_limits<double>::denorm_min());
    EXPECT_TRUE(std::signbit(TravelledAs(-0.0)));
    EXPECT_TRUE(std::isnan(TravelledAs(std::numeric_limits<double>::quiet_NaN())));
}

TEST_F(ValueBytes, TellStructures)
{
    winrt::guid const id(L"01234567-89ab-cdef-0123-456789abcdef");
    EXPECT_EQ(TravelledAs(id), id);
    DateTime const time(TimeSpan(133'000'000'000'000'001));
    EXPECT_EQ(TravelledAs(time), time);
    EXPECT_EQ(TravelledAs(TimeSpan(-1)), TimeSpan(-1));
    EXPECT_EQ(TravelledAs(Point{1.5f, -2}).Y, -2);
    EXPECT_EQ(TravelledAs(Size{3, 4}).Width, 3);
    EXPECT_EQ(TravelledAs(Rect{1, 2, 3, 4}).Height, 4);
}

TEST_F(ValueBytes, TellAnyText)
{
    for (auto const& text : {std::wstring(), std::wstring(L"4:a String 2:xy"), std::wstring(L"a\0b", 3),
                             std::wstring(L"\xD800 alone"), std::wstring(L"%2b %s%n \r\n \x4E16\x754C")})
    {
        EXPECT_EQ(TravelledAs(winrt::hstring(text)), text);
    }
}

TEST_F(ValueBytes, TellArrays)
{
    EXPECT_EQ(TravelledArray<std::uint8_t>(PropertyValue::CreateUInt8Array({0, 255})),
              (std::vector<std::uint8_t>{0, 255}));
    EXPECT_EQ(
        TravelledArray<winrt::hstring>(PropertyValue::CreateStringArray({winrt::hstring(L""), winrt::hstring(L"b")})),
        (std::vector<winrt::hstring>{L"", L"b"}));
    EXPECT_EQ(TravelledArray<bool>(PropertyValue::CreateBooleanArray({true, false})), (std::vector<bool>{true, false}));
    EXPECT_EQ(TravelledArray<double>(PropertyValue::CreateDoubleArray({0.1, 2.0})), (std::vector{0.1, 2.0}));
    EXPECT_TRUE(TravelledArray<Rect>(PropertyValue::CreateRectArray({})).empty());
    EXPECT_EQ(TravelledArray<std::uint8_t>(PropertyValue::CreateUInt8Array({1, 2, 3})),
              (std::vector<std::uint8_t>{1, 2, 3}));
    EXPECT_EQ(TravelledArray<char16_t>(PropertyValue::CreateChar16Array({u'\0', u'\xD83D'})),
              (std::vector<char16_t>{u'\0', u'\xD83D'}));
    EXPECT_EQ(TravelledArray<DateTime>(PropertyValue::CreateDateTimeArray({DateTime(TimeSpan(5))})),
              std::vector{DateTime(TimeSpan(5))});
}

TEST_F(ValueBytes, OfArraysAreAsLargeAsTheirBytes)
{
    constexpr std::size_t size = 1 << 20;
    std::vector<std::uint8_t> const bytes(size, 0xAB);
    auto const entry = sim::EntryOf(L"", PropertyValue::CreateUInt8Array(bytes));
    EXPECT_EQ(entry.type, static_cast<std::int32_t>(PropertyType::UInt8Array));
    EXPECT_EQ(entry.bytes, std::string(size, '\xAB'));
    std::vector<double> const numbers(1000);
    EXPECT_EQ(sim::EntryOf(L"", PropertyValue::CreateDoubleArray(numbers)).bytes.size(), 8000u);
}

TEST_F(ValueBytes, TellNullAndSetsInSets)
{
    EXPECT_FALSE(Travelled(nullptr));
    auto const inner = Travelled(SetOf({{L"inner", SetOf(L"text", L"x")}})).as<ValueSet>();
    EXPECT_EQ(TextIn(inner.Lookup(L"inner").as<ValueSet>(), L"text"), L"x");
}

TEST_F(ValueBytes, KeepTheOrder)
{
    auto const set = sim::SetFrom(sim::BytesOf(SetOf({{L"b", nullptr}, {L"a", nullptr}, {L"", nullptr}})));
    std::vector<std::wstring> names;
    for (auto const& entry : set)
    {
        names.emplace_back(entry.Key());
    }
    EXPECT_EQ(names, (std::vector<std::wstring>{L"b", L"a", L""}));
}

TEST_F(ValueBytes, OfWhatCannotTravelAreNone)
{
    constexpr auto unsupported = static_cast<std::int32_t>(0x8007065E);
    auto const textOf = [](IInspectable const& value) {
        return FailureOf([&] { sim::BytesOf(SetOf({{L"value", value}})); });
    };
    EXPECT_EQ(textOf(winrt::make<winrt::impl::reference<PropertyType>>(PropertyType::Int16)), unsupported);
    EXPECT_EQ(textOf(PropertyValue::CreateInspectableArray({})), unsupported);
    EXPECT_EQ(textOf(AppServiceConnection()), unsupported);
}

TEST_F(ValueBytes, OfNoSetAreRefused)
{
    for (auto const& bytes : {"x"s, sim::Encode(sim::SetEntries{{L"name"}}) + "more", "\2\0\0\0"s})
    {
        EXPECT_EQ(FailureOf([&] { sim::SetFrom(bytes); }), E_INVALIDARG) << bytes;
    }
}

TEST_F(ValueBytes, OfAnotherSizeOrTypeAreRefused)
{
    constexpr auto int32Array = 1028;
    constexpr auto stringArray = 1036;
    for (auto const& entry : sim::SetEntries{{L"an unknown type", 99, "1234"},
                                             {L"a type of arrays alone", 1024, ""},
                                             {L"a short number", 4, "123"},
                                             {L"two numbers", 4, "12345678"},
                                             {L"no number", 4, ""},
                                             {L"a short element", int32Array, "12345"},
                                             {L"a string without its length", 12, "x"},
                                             {L"a string that ends early", stringArray, "\1\0\0\0\2\0\0\0xx"s},
                                             {L"null with bytes", 0, "x"},
                                             {L"a set in a set", sim::SetEntry::ofSet, "x"},
                                             {L"a set in a set without its size", sim::SetEntry::ofSet, ""}})
    {
        EXPECT_EQ(FailureOf([&] { sim::SetFrom(sim::Encode(sim::SetEntries{entry})); }), E_INVALIDARG)
            << sim::ToUtf8(entry.name);
    }
}

TEST_F(ValueBytes, OfNothingAreAnEmptySet)
{
    EXPECT_EQ(sim::SetFrom("").Size(), 0u);
}

TEST_F(ValueBytes, OfAFlagAreSetOrClear)
{
    auto const flags = sim::ValueFrom({L"", 1035, "\0\xFF"s}).as<IReferenceArray<bool>>().Value();
    EXPECT_EQ(std::vector<bool>(flags.begin(), flags.end()), (std::vector{false, true}));
}

TEST_F(ValueBytes, AreReadByPeople)
{
    auto const read = [](IInspectable const& value) {
        auto const entry = sim::EntryOf(L"", value);
        return sim::TypeName(entry) + L" " + sim::ReadableValue(entry);
    };
    EXPECT_EQ(read(nullptr), L"Null ");
    EXPECT_EQ(read(winrt::box_value(L"https://x")), L"String https://x");
    EXPECT_EQ(read(PropertyValue::CreateStringArray({winrt::hstring(L"a"), winrt::hstring(L"b")})), L"String[] a, b");
    EXPECT_EQ(read(winrt::box_value(-5)), L"Int32 -5");
    EXPECT_EQ(read(winrt::box_value(UINT64_MAX)), L"UInt64 18446744073709551615");
    EXPECT_EQ(read(winrt::box_value(std::int16_t(-1))), L"Int16 -1");
    EXPECT_EQ(read(winrt::box_value(true)), L"Boolean 1");
    EXPECT_EQ(read(winrt::box_value(u'\x41')), L"Char16 65");
    EXPECT_EQ(read(winrt::box_value(1.0f)), L"Single 0000803F");
    EXPECT_EQ(read(PropertyValue::CreateUInt8Array({1, 0xFE, 0x7F})), L"UInt8[] 01FE7F");
    EXPECT_THROW(sim::TypeName({L"", 99}), sim::Error);
    EXPECT_THROW(sim::TypeName({L"", -1}), sim::Error);
    EXPECT_THROW(sim::ReadableValue({L"", 4, "123"}), sim::Error);
}
