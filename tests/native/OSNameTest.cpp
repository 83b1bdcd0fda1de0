#include "utils/OSName.h"

#include <gtest/gtest.h>

using namespace zant;

namespace
{

constexpr std::uint32_t largest = 0xFFFFFFFF;

// Of version 10.0 with that build text.
bool IsWindows11(wchar_t const* buildText)
{
    auto const name = OSName(10, 0, buildText);
    EXPECT_TRUE(name == L"Windows 10" || name == L"Windows 11");
    return name == L"Windows 11";
}

} // namespace

TEST(OSName, KnowsEachSystemOfVersion4)
{
    EXPECT_EQ(OSName(4, 0, L""), L"Windows 95");
    EXPECT_EQ(OSName(4, 10, L""), L"Windows 98");
    EXPECT_EQ(OSName(4, 90, L""), L"Windows ME");
    for (auto const minor : {1u, 9u, 11u, 89u, 91u, largest})
    {
        EXPECT_EQ(OSName(4, minor, L""), L"UNKNOWN") << minor;
    }
}

TEST(OSName, KnowsEachSystemOfVersion5)
{
    EXPECT_EQ(OSName(5, 0, L""), L"Windows 2000");
    EXPECT_EQ(OSName(5, 1, L""), L"Windows XP");
    EXPECT_EQ(OSName(5, 2, L""), L"Windows XP");
    for (auto const minor : {3u, 4u, 10u, 90u, largest})
    {
        EXPECT_EQ(OSName(5, minor, L""), L"UNKNOWN") << minor;
    }
}

TEST(OSName, KnowsEachSystemOfVersion6)
{
    EXPECT_EQ(OSName(6, 0, L""), L"Windows Vista");
    EXPECT_EQ(OSName(6, 1, L""), L"Windows 7");
    EXPECT_EQ(OSName(6, 2, L""), L"Windows 8");
    EXPECT_EQ(OSName(6, 3, L""), L"Windows 8.1");
    for (auto const minor : {4u, 5u, 10u, 90u, largest})
    {
        EXPECT_EQ(OSName(6, minor, L""), L"UNKNOWN") << minor;
    }
}

TEST(OSName, TellsVersion10WhateverItsMinorNumber)
{
    for (auto const minor : {0u, 1u, 9u, 90u, largest})
    {
        EXPECT_EQ(OSName(10, minor, L"19045"), L"Windows 10") << minor;
        EXPECT_EQ(OSName(10, minor, L"22631"), L"Windows 11") << minor;
    }
}

TEST(OSName, IsUnknownForAnyOtherMajorNumber)
{
    for (auto const major : {0u, 1u, 2u, 3u, 7u, 8u, 9u, 11u, 12u, 13u, 14u, largest})
    {
        for (auto const minor : {0u, 1u, 2u, 3u, 10u, 90u})
        {
            EXPECT_EQ(OSName(major, minor, L"22000"), L"UNKNOWN") << major << "." << minor;
        }
    }
}

TEST(OSName, LooksAtTheBuildOfVersion10Only)
{
    EXPECT_EQ(OSName(6, 1, L"22000"), L"Windows 7");
    EXPECT_EQ(OSName(4, 0, L"22000"), L"Windows 95");
}

TEST(OSName, IsWindows11FromBuild22000)
{
    EXPECT_FALSE(IsWindows11(L"0"));
    EXPECT_FALSE(IsWindows11(L"10240"));
    EXPECT_FALSE(IsWindows11(L"21999"));
    EXPECT_TRUE(IsWindows11(L"22000"));
    EXPECT_TRUE(IsWindows11(L"22001"));
    EXPECT_TRUE(IsWindows11(L"100000"));
    EXPECT_TRUE(IsWindows11(L"2147483647"));
}

TEST(OSName, ReadsTheDigitsAtTheStartOfTheBuildText)
{
    EXPECT_TRUE(IsWindows11(L"22000.1 and more"));
    EXPECT_TRUE(IsWindows11(L" \t\r\n22000"));
    EXPECT_TRUE(IsWindows11(L"+22000"));
    EXPECT_TRUE(IsWindows11(L"0022000"));
    EXPECT_FALSE(IsWindows11(L"2200 0"));
    EXPECT_FALSE(IsWindows11(L"-22000"));
    EXPECT_FALSE(IsWindows11(L"0x55F0"));
}

TEST(OSName, CountsABuildTextWithoutANumberAsZero)
{
    EXPECT_FALSE(IsWindows11(L""));
    EXPECT_FALSE(IsWindows11(L" "));
    EXPECT_FALSE(IsWindows11(L"build 22000"));
    EXPECT_FALSE(IsWindows11(L"+-22000"));
    EXPECT_FALSE(IsWindows11(L"#"));
}

TEST(OSName, TakesTheLow32BitsOfTheBuildAsASignedNumber)
{
    EXPECT_FALSE(IsWindows11(L"2147483648")) << "the least 32-bit number";
    EXPECT_FALSE(IsWindows11(L"4294967295")) << "-1";
    EXPECT_FALSE(IsWindows11(L"4294967296")) << "0";
    EXPECT_FALSE(IsWindows11(L"4294989295")) << "21999 above 32 bit";
    EXPECT_TRUE(IsWindows11(L"4294989296")) << "22000 above 32 bit";
    EXPECT_TRUE(IsWindows11(L"-4294945296")) << "22000 below 32 bit";
}

TEST(OSName, TakesABuildBeyond64BitsForTheNearestNumber)
{
    EXPECT_FALSE(IsWindows11(L"9223372036854775807")) << "-1";
    EXPECT_FALSE(IsWindows11(L"9223372036854797808")) << "would be 22000 if it wrapped around";
    EXPECT_FALSE(IsWindows11(L"18446744073709573616")) << "would be 22000 if it wrapped around";
    EXPECT_FALSE(IsWindows11(L"-9223372036854775808")) << "0";
    EXPECT_FALSE(IsWindows11(L"-18446744073709529616")) << "would be 22000 if it wrapped around";
}
