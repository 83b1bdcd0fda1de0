#include "simulator/runtime/values/ValueText.h"

#include "simulator/base/Error.h"
#include "simulator/protocol/SetText.h"
#include "simulator/runtime/values/ArrayOf.h"
#include "tests/unit/simulator/BackgroundApp.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>

using namespace test;
using namespace winrt::Windows::Foundation;

namespace
{

class ValueTexts : public testing::Test
{
  protected:
    static IInspectable Travelled(IInspectable const& value)
    {
        return sim::SetFrom(sim::TextOf(SetOf({{L"value", value}}))).Lookup(L"value");
    }

    template <typename T>
    static T TravelledAs(T const& value)
    {
        return winrt::unbox_value<T>(Travelled(winrt::box_value(value)));
    }

    template <typename T>
    static std::vector<T> TravelledArray(IInspectable const& array)
    {
        auto const values = sim::ArrayOf<T>(Travelled(array).as<IPropertyValue>());
        return std::vector<T>(values.begin(), values.end());
    }

    sim::LocalDevice host;
};

} // namespace

TEST_F(ValueTexts, TellWholeNumbersOfAllSizes)
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

TEST_F(ValueTexts, TellFloatingNumbersExactly)
{
    EXPECT_EQ(TravelledAs(0.1f), 0.1f);
    EXPECT_EQ(TravelledAs(0.1), 0.1);
    EXPECT_EQ(TravelledAs(std::numeric_limits<double>::denorm_min()), std::numeric_limits<double>::denorm_min());
    EXPECT_TRUE(std::signbit(TravelledAs(-0.0)));
    EXPECT_TRUE(std::isnan(TravelledAs(std::numeric_limits<double>::quiet_NaN())));
}

TEST_F(ValueTexts, TellStructures)
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

TEST_F(ValueTexts, TellAnyText)
{
    for (auto const& text : {std::wstring(), std::wstring(L"4:a String 2:xy"), std::wstring(L"a\0b", 3),
                             std::wstring(L"\xD800 alone"), std::wstring(L"%2b %s%n \r\n \x4E16\x754C")})
    {
        EXPECT_EQ(TravelledAs(winrt::hstring(text)), text);
    }
}

TEST_F(ValueTexts, TellArrays)
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

TEST_F(ValueTexts, OfArraysAreAsLargeAsTheirBytes)
{
    constexpr std::size_t size = 1 << 20;
    std::vector<std::uint8_t> const bytes(size, 0xAB);
    auto const text = sim::TextOfValue(PropertyValue::CreateUInt8Array(bytes));
    EXPECT_EQ(text.type, L"UInt8[]");
    EXPECT_EQ(text.text.size(), std::wstring(L"1048576:").size() + size / sizeof(wchar_t));
    std::vector<double> const numbers(1000);
    EXPECT_EQ(sim::TextOfValue(PropertyValue::CreateDoubleArray(numbers)).text.size(),
              std::wstring(L"8000:").size() + 8000 / sizeof(wchar_t));
}

TEST_F(ValueTexts, TellNullAndSetsInSets)
{
    EXPECT_FALSE(Travelled(nullptr));
    auto const inner = Travelled(SetOf({{L"inner", SetOf(L"text", L"x")}})).as<ValueSet>();
    EXPECT_EQ(TextIn(inner.Lookup(L"inner").as<ValueSet>(), L"text"), L"x");
}

TEST_F(ValueTexts, KeepTheOrder)
{
    auto const set = sim::SetFrom(sim::TextOf(SetOf({{L"b", nullptr}, {L"a", nullptr}, {L"", nullptr}})));
    std::vector<std::wstring> names;
    for (auto const& entry : set)
    {
        names.emplace_back(entry.Key());
    }
    EXPECT_EQ(names, (std::vector<std::wstring>{L"b", L"a", L""}));
}

TEST_F(ValueTexts, OfWhatCannotTravelAreNone)
{
    constexpr auto unsupported = static_cast<std::int32_t>(0x8007065E);
    auto const textOf = [](IInspectable const& value) {
        return FailureOf([&] { sim::TextOf(SetOf({{L"value", value}})); });
    };
    EXPECT_EQ(textOf(winrt::make<winrt::impl::reference<PropertyType>>(PropertyType::Int16)), unsupported);
    EXPECT_EQ(textOf(PropertyValue::CreateInspectableArray({})), unsupported);
    EXPECT_EQ(textOf(AppServiceConnection()), unsupported);
}

TEST_F(ValueTexts, AreRefusedWhenTheyAreNone)
{
    for (auto const* const text :
         {L"x", L"4:abc", L"3:abc", L"3:abc String", L"3:abcString 1:x", L"1:a Int32 1:x", L"1:a Strings 1:x",
          L"1:a Guid 2:00", L"1:a Single 8:0000000G", L"1:a Int32[] 1:5", L"1:a UInt8[] 3:3:x", L"1:a UInt8[] 4:2:xy",
          L"1:a Int32[] 3:2:x", L"1:a String[] 1:x"})
    {
        EXPECT_EQ(FailureOf([&] { sim::SetFrom(text); }), E_INVALIDARG) << std::wstring(text).size();
    }
}

TEST(ValueTextOfSets, IsReadByPeople)
{
    std::wstring text;
    sim::AppendEntry(text, {L"CURI", L"String", L"https://x"});
    EXPECT_EQ(text, L"4:CURI String 9:https://x");
    auto const entries = sim::ParseSet(text);
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].name, L"CURI");
    EXPECT_EQ(entries[0].type, L"String");
    EXPECT_EQ(entries[0].value, L"https://x");
    EXPECT_TRUE(sim::ParseSet(L"").empty());
    EXPECT_THROW(sim::ParseSet(L"4:CUR"), sim::Error);
    EXPECT_EQ(sim::ReadableValue(entries[0]), L"https://x");
    auto const bytes = sim::PackBytes("\x01\xFE\x7F");
    EXPECT_EQ(sim::ReadableValue({L"Bytes", L"UInt8[]", bytes}), L"01FE7F");
}
