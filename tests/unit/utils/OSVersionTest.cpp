#include "utils/OSVersion.h"
#include "tests/support/ShortMemory.h"
#include "tests/support/WrappedSystem.h"
#include "utils/OSName.h"

#include <cstring>
#include <cwchar>
#include <gtest/gtest.h>
#include <tuple>
#include <vector>
#include <windows.h>

using namespace test;
using namespace zant;

namespace
{

// major, minor, service pack
using Numbers = std::tuple<std::uint32_t, std::uint32_t, std::uint32_t>;

Numbers NumbersOf(OSVersion const& version)
{
    return {version.major, version.minor, version.servicePack};
}

// Makes the system one of that version and build while it exists.
class SimulatedSystem
{
  public:
    SimulatedSystem(Numbers const& numbers, DWORD build)
        : m_verifyVersion([this, numbers](auto, OSVERSIONINFOEXW* wanted, auto...) -> BOOL {
              asked.emplace_back(wanted->dwMajorVersion, wanted->dwMinorVersion, wanted->wServicePackMajor);
              return numbers >= asked.back();
          }),
          m_getVersion([build](auto, OSVERSIONINFOW* version) -> BOOL {
              EXPECT_EQ(version->dwOSVersionInfoSize, sizeof(OSVERSIONINFOEXW));
              version->dwBuildNumber = build;
              return TRUE;
          })
    {
    }

    std::vector<Numbers> asked; // "are you at least this?", in order

  private:
    VerifyVersionCall m_verifyVersion;
    GetVersionCall m_getVersion;
};

auto FailingGetVersion()
{
    return [](auto, OSVERSIONINFOW*) -> BOOL { return FALSE; };
}

struct System
{
    Numbers real;
    DWORD build;
    Numbers probed;
    std::wstring name;
};

void PrintTo(System const& system, std::ostream* stream)
{
    *stream << testing::PrintToString(system.real) << ", build " << system.build;
}

class OSVersionOfSystem : public testing::TestWithParam<System>
{
  protected:
    SimulatedSystem simulated{GetParam().real, GetParam().build};
};

TEST_P(OSVersionOfSystem, IsProbed)
{
    OSVersion version{7, 8, 9};
    EXPECT_TRUE(ProbeOSVersion(version));
    EXPECT_EQ(NumbersOf(version), GetParam().probed);
}

TEST_P(OSVersionOfSystem, GivesItsName)
{
    OSVersion version;
    ProbeOSVersion(version);
    std::wstring name = L"former";
    EXPECT_TRUE(GetOSName(version, name));
    EXPECT_EQ(name, GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(
    Known, OSVersionOfSystem,
    testing::Values(
        System{{4, 0, 6}, 1381, {4, 0, 6}, L"Windows 95"}, System{{5, 0, 4}, 2195, {5, 0, 4}, L"Windows 2000"},
        System{{5, 1, 3}, 2600, {5, 1, 3}, L"Windows XP"}, System{{5, 2, 2}, 3790, {5, 2, 2}, L"Windows XP"},
        System{{6, 0, 2}, 6002, {6, 0, 2}, L"Windows Vista"}, System{{6, 1, 1}, 7601, {6, 1, 1}, L"Windows 7"},
        System{{6, 2, 0}, 9200, {6, 2, 0}, L"Windows 8"}, System{{6, 3, 0}, 9600, {6, 3, 0}, L"Windows 8.1"},
        System{{10, 0, 0}, 10240, {10, 0, 0}, L"Windows 10"}, System{{10, 0, 0}, 21999, {10, 0, 0}, L"Windows 10"},
        System{{10, 0, 0}, 22000, {10, 0, 0}, L"Windows 11"}, System{{10, 0, 0}, 26100, {10, 0, 0}, L"Windows 11"}));

INSTANTIATE_TEST_SUITE_P(Unknown, OSVersionOfSystem,
                         testing::Values(System{{5, 3, 0}, 22000, {5, 3, 0}, L"UNKNOWN"},
                                         System{{6, 4, 0}, 9841, {6, 4, 0}, L"UNKNOWN"},
                                         System{{7, 0, 0}, 22000, {7, 0, 0}, L"UNKNOWN"},
                                         System{{9, 8, 8}, 22000, {9, 8, 8}, L"UNKNOWN"},
                                         System{{13, 2, 1}, 22000, {13, 2, 1}, L"UNKNOWN"}));

// With a minor number above 8 neither it nor the service pack is found: each probe lies below.
INSTANTIATE_TEST_SUITE_P(BeyondTheMinorNumbersProbed, OSVersionOfSystem,
                         testing::Values(System{{4, 10, 0}, 1998, {4, 0, 0}, L"Windows 95"},
                                         System{{4, 90, 0}, 3000, {4, 0, 0}, L"Windows 95"},
                                         System{{6, 8, 0}, 9999, {6, 8, 0}, L"UNKNOWN"},
                                         System{{6, 9, 0}, 9999, {6, 0, 0}, L"Windows Vista"}));

INSTANTIATE_TEST_SUITE_P(BeyondTheServicePacksProbed, OSVersionOfSystem,
                         testing::Values(System{{6, 1, 8}, 7601, {6, 1, 8}, L"Windows 7"},
                                         System{{6, 1, 9}, 7601, {6, 1, 0}, L"Windows 7"}));

INSTANTIATE_TEST_SUITE_P(BeyondTheMajorNumbersProbed, OSVersionOfSystem,
                         testing::Values(System{{3, 51, 5}, 1057, {3, 0, 0}, L"UNKNOWN"},
                                         System{{13, 0, 0}, 22000, {13, 0, 0}, L"UNKNOWN"},
                                         System{{14, 0, 0}, 22000, {0, 0, 0}, L"UNKNOWN"},
                                         System{{15, 3, 1}, 22000, {0, 0, 0}, L"UNKNOWN"}));

TEST(OSVersion, IsNothingAtFirst)
{
    EXPECT_EQ(NumbersOf(OSVersion()), Numbers(0, 0, 0));
}

TEST(OSVersion, IsProbedOneNumberAfterTheOther)
{
    SimulatedSystem const system({6, 1, 1}, 7601);
    OSVersion version;
    ProbeOSVersion(version);
    EXPECT_EQ(
        system.asked,
        (std::vector<Numbers>{{4, 0, 0}, {5, 0, 0}, {6, 0, 0}, {7, 0, 0}, {6, 1, 0}, {6, 2, 0}, {6, 1, 1}, {6, 1, 2}}));
}

TEST(OSVersion, IsProbedUpTo14And9And9)
{
    SimulatedSystem const system({99, 0, 0}, 22000);
    OSVersion version;
    ProbeOSVersion(version);
    std::vector<Numbers> expected;
    for (auto major = 4u; major <= 14; ++major)
    {
        expected.emplace_back(major, 0, 0);
    }
    for (auto minor = 1u; minor <= 9; ++minor)
    {
        expected.emplace_back(0, minor, 0);
    }
    for (auto servicePack = 1u; servicePack <= 9; ++servicePack)
    {
        expected.emplace_back(0, 0, servicePack);
    }
    EXPECT_EQ(system.asked, expected);
}

TEST(OSVersion, IsComparedByTheseThreeNumbersAndNothingElse)
{
    auto const atLeast = [](DWORD type) { return VerSetConditionMask(0, type, VER_GREATER_EQUAL); };
    auto const conditions = atLeast(VER_MAJORVERSION) | atLeast(VER_MINORVERSION) | atLeast(VER_SERVICEPACKMAJOR);
    VerifyVersionCall const verify([&](auto, OSVERSIONINFOEXW* wanted, DWORD compared, DWORDLONG mask) -> BOOL {
        EXPECT_EQ(compared, static_cast<DWORD>(VER_MAJORVERSION | VER_MINORVERSION | VER_SERVICEPACKMAJOR));
        EXPECT_EQ(mask, conditions);
        OSVERSIONINFOEXW expected = {};
        expected.dwOSVersionInfoSize = sizeof expected;
        expected.dwMajorVersion = wanted->dwMajorVersion;
        expected.dwMinorVersion = wanted->dwMinorVersion;
        expected.wServicePackMajor = wanted->wServicePackMajor;
        EXPECT_EQ(std::memcmp(wanted, &expected, sizeof expected), 0);
        return wanted->dwMajorVersion <= 6 && wanted->dwMinorVersion <= 1;
    });
    OSVersion version;
    ProbeOSVersion(version);
}

TEST(OSVersion, OfThisSystemIsWhatItSays)
{
    OSVERSIONINFOEXW system = {};
    system.dwOSVersionInfoSize = sizeof system;
    ASSERT_TRUE(GetVersionCall::Original(reinterpret_cast<OSVERSIONINFOW*>(&system)));
    OSVersion version;
    ProbeOSVersion(version);
    EXPECT_EQ(NumbersOf(version), Numbers(system.dwMajorVersion, system.dwMinorVersion, system.wServicePackMajor));
    std::wstring build;
    EXPECT_TRUE(GetOSBuildText(build));
    EXPECT_EQ(build, std::to_wstring(system.dwBuildNumber));
}

TEST(OSVersionText, IsTheNumbersJoinedByPoints)
{
    std::wstring text = L"former";
    EXPECT_TRUE(GetOSVersionText({10, 0, 0}, text));
    EXPECT_EQ(text, L"10.0.0");
    EXPECT_TRUE(GetOSVersionText({6, 1, 2}, text));
    EXPECT_EQ(text, L"6.1.2");
    EXPECT_TRUE(GetOSVersionText({}, text));
    EXPECT_EQ(text, L"0.0.0");
    EXPECT_TRUE(GetOSVersionText({4294967295, 2147483648, 1234567890}, text));
    EXPECT_EQ(text, L"4294967295.2147483648.1234567890");
}

TEST(OSVersionText, IsNotGivenWhenMemoryIsShort)
{
    std::wstring text = L"former";
    auto result = true;
    {
        test::ShortMemory const memory;
        result = GetOSVersionText({4294967295, 4294967295, 4294967295}, text);
    }
    EXPECT_FALSE(result);
    EXPECT_EQ(text, L"former");
}

TEST(OSVersionBuildText, IsTheNumberInDecimal)
{
    for (auto const& [build, expected] : {std::pair<DWORD, std::wstring>{0, L"0"},
                                          {7601, L"7601"},
                                          {22000, L"22000"},
                                          {2147483647, L"2147483647"},
                                          {2147483648, L"-2147483648"}, // written with %d
                                          {4294967295, L"-1"}})
    {
        SimulatedSystem const system({10, 0, 0}, build);
        std::wstring text = L"former";
        EXPECT_TRUE(GetOSBuildText(text));
        EXPECT_EQ(text, expected);
    }
}

TEST(OSVersionBuildText, StaysAsItWasWhenTheSystemDoesNotTell)
{
    GetVersionCall const failing(FailingGetVersion());
    std::wstring text = L"former";
    EXPECT_FALSE(GetOSBuildText(text));
    EXPECT_EQ(text, L"former");
}

TEST(OSVersionBuildText, StaysAsItWasWhenMemoryIsShort)
{
    SimulatedSystem const system({10, 0, 0}, 2147483648);
    std::wstring text = L"former";
    auto result = true;
    {
        test::ShortMemory const memory;
        result = GetOSBuildText(text);
    }
    EXPECT_FALSE(result);
    EXPECT_EQ(text, L"former");
}

TEST(OSVersionName, IsThatOfTheEarliestBuildWhenTheSystemDoesNotTell)
{
    GetVersionCall const failing(FailingGetVersion());
    std::wstring name;
    EXPECT_TRUE(GetOSName({10, 0, 0}, name));
    EXPECT_EQ(name, L"Windows 10");
}

TEST(OSVersionName, StaysAsItWasWhenMemoryIsShort)
{
    SimulatedSystem const system({6, 0, 2}, 6002);
    std::wstring name = L"former";
    auto result = true;
    {
        test::ShortMemory const memory;
        result = GetOSName({6, 0, 2}, name);
    }
    EXPECT_FALSE(result);
    EXPECT_EQ(name, L"former");
}

// Without numbers beyond 64 bits, where Wine's _wtoi64 differs from that of Windows.
TEST(OSVersionName, ReadsTheBuildTextAsTheRuntimeDoes)
{
    for (auto const* const text : {L"",
                                   L" ",
                                   L"-",
                                   L"+",
                                   L"build",
                                   L"21999",
                                   L"22000",
                                   L"22000x",
                                   L"x22000",
                                   L"\t\v\f 22000",
                                   L"+22000",
                                   L"-1",
                                   L"+-22000",
                                   L"0x55F0",
                                   L"022000",
                                   L"2147483647",
                                   L"2147483648",
                                   L"4294989295",
                                   L"4294989296",
                                   L"-4294945296",
                                   L"9223372036854775807",
                                   L"-9223372036854775808",
                                   L"22 000",
                                   L"22.000",
                                   L"22,000"})
    {
        std::wstring const expected = static_cast<std::int32_t>(_wtoi64(text)) >= 22000 ? L"Windows 11" : L"Windows 10";
        EXPECT_EQ(std::wstring(OSName(10, 0, text)), expected) << testing::PrintToString(text);
    }
}

} // namespace

WRAP(GetVersionCall, GetVersionExW);
WRAP(VerifyVersionCall, VerifyVersionInfoW);
