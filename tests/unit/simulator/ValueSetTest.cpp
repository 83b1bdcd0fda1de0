#include "tests/unit/simulator/BackgroundApp.h"

#include <algorithm>
#include <windows.h>

using namespace test;
using winrt::Windows::Foundation::IPropertyValue;
using winrt::Windows::Foundation::PropertyType;
using winrt::Windows::Foundation::PropertyValue;

namespace
{

constexpr auto outOfBounds = static_cast<std::int32_t>(0x8000000B);

class ValueSetElements : public testing::Test
{
  protected:
    sim::LocalDevice host;
};

class ValueSets : public ValueSetElements
{
  protected:
    std::vector<std::wstring> Names() const
    {
        std::vector<std::wstring> names;
        for (auto const& entry : set)
        {
            names.emplace_back(entry.Key());
        }
        return names;
    }

    ValueSet set;
};

} // namespace

TEST_F(ValueSets, KeepTheOrderOfInsertion)
{
    EXPECT_FALSE(set.Insert(L"b", winrt::box_value(1)));
    EXPECT_FALSE(set.Insert(L"a", winrt::box_value(2)));
    EXPECT_TRUE(set.Insert(L"b", winrt::box_value(3)));
    EXPECT_EQ(Names(), (std::vector<std::wstring>{L"b", L"a"}));
    EXPECT_EQ(winrt::unbox_value<int>(set.Lookup(L"b")), 3);
    EXPECT_EQ(set.Size(), 2u);
}

TEST_F(ValueSets, TellNamesApartByCase)
{
    set.Insert(L"name", winrt::box_value(1));
    EXPECT_FALSE(set.HasKey(L"Name"));
    EXPECT_EQ(FailureOf([&] { set.Lookup(L"Name"); }), outOfBounds);
}

TEST_F(ValueSets, HoldNulls)
{
    set.Insert(L"nothing", nullptr);
    EXPECT_TRUE(set.HasKey(L"nothing"));
    EXPECT_FALSE(set.Lookup(L"nothing"));
}

TEST_F(ValueSets, LetGoOfTheirValues)
{
    set.Insert(L"a", winrt::box_value(1));
    set.Insert(L"b", winrt::box_value(2));
    set.Remove(L"a");
    EXPECT_EQ(Names(), std::vector<std::wstring>{L"b"});
    EXPECT_EQ(FailureOf([&] { set.Remove(L"a"); }), outOfBounds);
    set.Clear();
    EXPECT_EQ(set.Size(), 0u);
    EXPECT_FALSE(set.First().HasCurrent());
    EXPECT_EQ(FailureOf([&] { set.First().Current(); }), outOfBounds);
}

TEST_F(ValueSets, AreWalkedThroughAsTheyWere)
{
    set.Insert(L"a", winrt::box_value(1));
    auto const view = set.GetView();
    auto const first = set.First();
    set.Clear();
    EXPECT_EQ(first.Current().Key(), L"a");
    EXPECT_FALSE(first.MoveNext());
    EXPECT_EQ(view.Size(), 1u);
    EXPECT_TRUE(view.HasKey(L"a"));
    EXPECT_EQ(winrt::unbox_value<int>(view.Lookup(L"a")), 1);
    EXPECT_EQ(FailureOf([&] { view.Lookup(L"b"); }), outOfBounds);
}

TEST_F(ValueSets, FailOnRequest)
{
    host.SetFault(L"ValueSet now 0x80040154 1");
    EXPECT_EQ(FailureOf([] { ValueSet(); }), REGDB_E_CLASSNOTREG);
    host.SetFault(L"ValueSet.ActivateInstance now 0x80004005 1");
    EXPECT_EQ(FailureOf([] { ValueSet(); }), E_FAIL);
    host.SetFault(L"ValueSet.Insert now 0x80004005 1");
    EXPECT_EQ(FailureOf([&] { set.Insert(L"a", nullptr); }), E_FAIL);
    EXPECT_FALSE(set.HasKey(L"a"));
    set.Insert(L"a", winrt::box_value(1));
    host.SetFault(L"ValueSet.Lookup now 0x80004005 1");
    EXPECT_EQ(FailureOf([&] { set.Lookup(L"a"); }), E_FAIL);
    host.SetFault(L"ValueSet.Lookup null 1");
    EXPECT_FALSE(set.Lookup(L"a"));
    EXPECT_TRUE(set.Lookup(L"a"));
}

TEST_F(ValueSetElements, KnowTheirTypes)
{
    EXPECT_EQ(winrt::box_value(L"text").as<IPropertyValue>().Type(), PropertyType::String);
    EXPECT_EQ(winrt::box_value(5).as<IPropertyValue>().Type(), PropertyType::Int32);
    EXPECT_EQ(PropertyValue::CreateUInt8Array({}).as<IPropertyValue>().Type(), PropertyType::UInt8Array);
    EXPECT_EQ(PropertyValue::CreateRectArray({}).as<IPropertyValue>().Type(), PropertyType::RectArray);
    EXPECT_EQ(PropertyValue::CreateInspectableArray({}).as<IPropertyValue>().Type(), PropertyType::InspectableArray);
    EXPECT_FALSE(PropertyValue::CreateEmpty());
}

TEST_F(ValueSetElements, AreNotGivenAsAnotherType)
{
    auto const text = winrt::box_value(L"5").as<IPropertyValue>();
    EXPECT_EQ(FailureOf([&] { text.GetInt32(); }), TYPE_E_TYPEMISMATCH);
    auto const array = PropertyValue::CreateInt32Array({1, 2}).as<IPropertyValue>();
    EXPECT_EQ(FailureOf([&] { array.GetInt32(); }), TYPE_E_TYPEMISMATCH);
    winrt::com_array<std::int64_t> wrong;
    EXPECT_EQ(FailureOf([&] { array.GetInt64Array(wrong); }), TYPE_E_TYPEMISMATCH);
}

TEST_F(ValueSetElements, MayBeArrays)
{
    auto const array =
        PropertyValue::CreateStringArray({winrt::hstring(L"a"), winrt::hstring(L"b")}).as<IPropertyValue>();
    winrt::com_array<winrt::hstring> values;
    array.GetStringArray(values);
    EXPECT_TRUE(std::ranges::equal(values, std::vector<winrt::hstring>{L"a", L"b"}));
}

TEST_F(ValueSetElements, ThatAreArraysAreReferencesToThem)
{
    using winrt::Windows::Foundation::IReferenceArray;
    auto const bytes = PropertyValue::CreateUInt8Array({1, 2, 3});
    EXPECT_TRUE(std::ranges::equal(bytes.as<IReferenceArray<std::uint8_t>>().Value(), std::vector{1, 2, 3}));
    EXPECT_FALSE(bytes.try_as<IReferenceArray<std::int32_t>>());
    EXPECT_EQ(winrt::get_class_name(bytes), L"Windows.Foundation.IReferenceArray`1<UInt8>");
    auto const flags = PropertyValue::CreateBooleanArray({true, false}).as<IReferenceArray<bool>>().Value();
    EXPECT_TRUE(std::ranges::equal(flags, std::vector{true, false}));
    EXPECT_EQ(PropertyValue::CreateInspectableArray({nullptr}).as<IReferenceArray<IInspectable>>().Value().size(), 1u);
}

TEST_F(ValueSetElements, FailOnRequest)
{
    host.SetFault(L"PropertyValue.CreateString now 0x80004005 1");
    EXPECT_EQ(FailureOf([] { winrt::box_value(L"text"); }), E_FAIL);
    host.SetFault(L"PropertyValue now 0x80040154 1");
    EXPECT_EQ(FailureOf([] { winrt::box_value(L"text"); }), REGDB_E_CLASSNOTREG);
}
