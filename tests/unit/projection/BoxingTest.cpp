#include "tests/unit/projection/PropertyValues.h"

#include <gtest/gtest.h>

using namespace test;
using namespace winrt;
using namespace Windows::Foundation;

namespace
{

class Boxing : public testing::Test
{
  protected:
    Boxing()
    {
        platform.Provide(L"Windows.Foundation.PropertyValue", [] { return make<PropertyValues>(); });
    }

    template <typename T>
    void ExpectBoxed(T const& value, PropertyType type)
    {
        auto const boxed = box_value(value);
        EXPECT_EQ(unbox_value<T>(boxed), value);
        EXPECT_EQ(boxed.template as<IPropertyValue>().Type(), type);
    }

    TestPlatform platform;
};

} // namespace

TEST_F(Boxing, EachTypeComesBack)
{
    ExpectBoxed<uint8_t>(1, PropertyType::UInt8);
    ExpectBoxed<int16_t>(-2, PropertyType::Int16);
    ExpectBoxed<uint16_t>(3, PropertyType::UInt16);
    ExpectBoxed<int32_t>(-4, PropertyType::Int32);
    ExpectBoxed<uint32_t>(5, PropertyType::UInt32);
    ExpectBoxed<int64_t>(-6, PropertyType::Int64);
    ExpectBoxed<uint64_t>(7, PropertyType::UInt64);
    ExpectBoxed(1.5f, PropertyType::Single);
    ExpectBoxed(2.5, PropertyType::Double);
    ExpectBoxed(u'x', PropertyType::Char16);
    ExpectBoxed(true, PropertyType::Boolean);
    ExpectBoxed(hstring(L"text"), PropertyType::String);
    ExpectBoxed(guid_of<IStringable>(), PropertyType::Guid);
    ExpectBoxed(DateTime(TimeSpan(8)), PropertyType::DateTime);
    ExpectBoxed(TimeSpan(9), PropertyType::TimeSpan);
    ExpectBoxed(Point{1, 2}, PropertyType::Point);
    ExpectBoxed(Size{3, 4}, PropertyType::Size);
    ExpectBoxed(Rect{1, 2, 3, 4}, PropertyType::Rect);
    EXPECT_EQ(platform.Activations(L"Windows.Foundation.PropertyValue"), 1);
}

TEST_F(Boxing, EnumerationsKeepTheirType)
{
    auto const boxed = box_value(AsyncStatus::Error);
    EXPECT_EQ(unbox_value<AsyncStatus>(boxed), AsyncStatus::Error);
    EXPECT_EQ(boxed.as<IPropertyValue>().Type(), PropertyType::OtherType);
    EXPECT_THROW(unbox_value<int32_t>(boxed), hresult_no_interface);
}

TEST_F(Boxing, LiteralsAreStrings)
{
    EXPECT_EQ(unbox_value<hstring>(box_value(L"text")), L"text");
}

TEST_F(Boxing, ObjectsAreTheirOwnBoxes)
{
    auto const object = box_value(1);
    EXPECT_EQ(get_abi(box_value(object)), get_abi(object));
    EXPECT_EQ(unbox_value<IPropertyValue>(object).GetInt32(), 1);
}

TEST_F(Boxing, AnotherTypeIsRaised)
{
    EXPECT_THROW(unbox_value<hstring>(box_value(1)), hresult_no_interface);
    EXPECT_THROW(unbox_value<int32_t>(nullptr), hresult_no_interface);
}

TEST_F(Boxing, OrGivesTheOther)
{
    EXPECT_EQ(unbox_value_or<hstring>(box_value(1), L"none"), L"none");
    EXPECT_EQ(unbox_value_or<hstring>(nullptr, L"none"), L"none");
    EXPECT_EQ(unbox_value_or<hstring>(box_value(L"text"), L"none"), L"text");
    EXPECT_EQ(unbox_value_or<int32_t>(box_value(L"text"), 7), 7);
    EXPECT_EQ(unbox_value_or<int32_t>(box_value(1), 7), 1);
}

TEST_F(Boxing, GettersOfAnotherTypeFail)
{
    auto const boxed = box_value(1).as<IPropertyValue>();
    EXPECT_TRUE(boxed.IsNumericScalar());
    EXPECT_FALSE(box_value(L"1").as<IPropertyValue>().IsNumericScalar());
    try
    {
        boxed.GetString();
        ADD_FAILURE();
    }
    catch (hresult_error const& error)
    {
        EXPECT_EQ(error.code(), static_cast<int32_t>(0x80028CA0));
    }
    com_array<uint8_t> bytes;
    EXPECT_THROW(boxed.GetUInt8Array(bytes), hresult_error);
    EXPECT_THROW(boxed.GetInspectableArray(*std::make_unique<com_array<Windows::Foundation::IInspectable>>()),
                 hresult_error);
}

TEST_F(Boxing, ABoxTellsItsTypeInItsName)
{
    EXPECT_EQ(get_class_name(box_value(1)), L"Windows.Foundation.IReference`1<Int32>");
    EXPECT_EQ(get_class_name(box_value(L"x")), L"Windows.Foundation.IReference`1<String>");
}

TEST_F(Boxing, APlatformWithoutBoxesIsRaised)
{
    platform.Provide(L"Windows.Foundation.PropertyValue",
                     []() -> Windows::Foundation::IInspectable { throw hresult_access_denied(); });
    EXPECT_THROW(box_value(1), hresult_access_denied);
}
