#include <unknwn.h> // first: the projection then speaks classic COM, too
#include <winrt/base.h>

#include <gtest/gtest.h>

using winrt::guid;

TEST(Guid, IsReadFromItsText)
{
    constexpr guid value("5A648006-843A-4DA9-865B-9D26E5DFAD7B");
    static_assert(value.Data1 == 0x5A648006 && value.Data2 == 0x843A && value.Data3 == 0x4DA9);
    static_assert(value.Data4[0] == 0x86 && value.Data4[7] == 0x7B);
    EXPECT_EQ(value, guid(L"5a648006-843a-4da9-865b-9d26e5dfad7b"));
}

TEST(Guid, RejectsTextOfAnotherForm)
{
    EXPECT_THROW(guid("5A648006-843A-4DA9-865B-9D26E5DFAD7"), std::invalid_argument);
    EXPECT_THROW(guid("5A648006 843A-4DA9-865B-9D26E5DFAD7B"), std::invalid_argument);
    EXPECT_THROW(guid("5A64800G-843A-4DA9-865B-9D26E5DFAD7B"), std::invalid_argument);
    EXPECT_THROW(guid(L"{5A648006-843A-4DA9-865B-9D26E5DFAD7B}"), std::invalid_argument);
}

TEST(Guid, ConvertsToAndFromTheSystems)
{
    guid const value(__uuidof(::IUnknown));
    GUID const& system = value;
    EXPECT_TRUE(IsEqualGUID(system, __uuidof(::IUnknown)));
}

TEST(Guid, ComparesAndHashesByValue)
{
    guid const left("5A648006-843A-4DA9-865B-9D26E5DFAD7B");
    guid const right("5A648006-843A-4DA9-865B-9D26E5DFAD7C");
    EXPECT_NE(left, right);
    EXPECT_LT(left, right);
    EXPECT_EQ(std::hash<guid>{}(left), std::hash<guid>{}(guid(left)));
    EXPECT_NE(std::hash<guid>{}(left), std::hash<guid>{}(right));
}

TEST(Guid, IsWrittenWithBracesInSmallLetters)
{
    EXPECT_EQ(winrt::to_hstring(guid("5A648006-843A-4DA9-865B-9D26E5DFAD7B")),
              L"{5a648006-843a-4da9-865b-9d26e5dfad7b}");
}
