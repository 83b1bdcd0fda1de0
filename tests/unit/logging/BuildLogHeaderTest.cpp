#include "logging/BuildLogHeader.h"

#include "logging/LogTargetDefault.h"
#include "tests/support/Failing.h"
#include "tests/support/ShortMemory.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WrappedSystem.h"
#include "tests/unit/logging/SuiteProgram.h"
#include "utils/Locale.h"

#include <gtest/gtest.h>
#include <new>
#include <string_view>
#include <tuple>

using namespace test;
using namespace zant;

namespace
{

// Makes the system Windows 10.0 of this build while it exists.
class WindowsOfBuild
{
  public:
    explicit WindowsOfBuild(DWORD build)
        : m_build([build](auto, OSVERSIONINFOW* version) {
              version->dwBuildNumber = build;
              return TRUE;
          })
    {
    }

  private:
    VerifyVersionCall m_numbers{[](auto, OSVERSIONINFOEXW* wanted, auto...) -> BOOL {
        return std::tuple(DWORD{10}, DWORD{0}, WORD{0}) >=
               std::tuple(wanted->dwMajorVersion, wanted->dwMinorVersion, wanted->wServicePackMajor);
    }};
    GetVersionCall m_build;
};

// Sets the current folder while it exists.
class CurrentFolder
{
  public:
    explicit CurrentFolder(std::wstring const& folder)
    {
        GetCurrentDirectoryW(MAX_PATH, m_before);
        EXPECT_TRUE(SetCurrentDirectoryW(folder.c_str()));
    }

    CurrentFolder(CurrentFolder const&) = delete;
    CurrentFolder& operator=(CurrentFolder const&) = delete;

    ~CurrentFolder() { SetCurrentDirectoryW(m_before); }

  private:
    wchar_t m_before[MAX_PATH] = {};
};

std::wstring Locale()
{
    std::wstring locale;
    GetUserLocale(locale);
    return locale;
}

using Entries = std::map<std::wstring, std::wstring>;

} // namespace

WRAP(GetProcAddressCall, GetProcAddress);
WRAP(GetVersionCall, GetVersionExW);
WRAP(RegGetValueCall, RegGetValueW);
WRAP(VerifyVersionCall, VerifyVersionInfoW);

TEST(BuildLogHeader, TellsOfTheMachineBetweenLinesOfAsterisks)
{
    WindowsOfBuild const windows(19'045);
    auto const header = BuildLogHeader();
    EXPECT_EQ(header.title, std::wstring(78, L'*'));
    EXPECT_EQ(header.closing, std::wstring(78, L'*'));
    EXPECT_FALSE(header.merge);
    EXPECT_EQ(header.entries, (Entries{{L"Bit: ", L"64"},
                                       {L"OS Build Version: ", L"19045"},
                                       {L"OS Locale: ", Locale()},
                                       {L"OS Name: ", L"Windows 10"},
                                       {L"OS Version: ", L"10.0.0"}}));
}

// Examines the target during its construction, in zeroed memory.
TEST(BuildLogHeader, IsTheLastThingThatATargetSets)
{
    alignas(LogTargetDefault) std::byte memory[sizeof(LogTargetDefault)] = {};
    auto const& target = *reinterpret_cast<LogTargetDefault const*>(memory);
    int probes = 0;
    VerifyVersionCall const probe([&](auto next, auto... arguments) {
        ++probes;
        EXPECT_EQ(target.group, L"ZEB");
        EXPECT_EQ(target.separator, L" | ");
        EXPECT_EQ(target.maskedKeys, CredentialKeys());
        EXPECT_TRUE(target.useLock);
        EXPECT_EQ(target.storedHeader.title, L"");
        return next(arguments...);
    });
    auto* const made = new (memory) LogTargetDefault;
    EXPECT_GT(probes, 0);
    EXPECT_EQ(made->storedHeader.title, std::wstring(78, L'*'));
    made->~LogTargetDefault();
}

TEST(BuildLogHeader, Tells64BitsAlsoWhereTheSystemTells32)
{
    // Without the newer function a process that is not emulated counts as 32-bit.
    GetProcAddressCall const older([](auto system, HMODULE library, char const* name) {
        return std::string_view(name) == "IsWow64Process2" ? nullptr : system(library, name);
    });
    EXPECT_EQ(BuildLogHeader().entries.at(L"Bit: "), L"64");
}

TEST(BuildLogHeader, TellsTheVersionOfAnInstalledSuite)
{
    SuiteProgram const suite;
    auto const header = BuildLogHeader();
    EXPECT_EQ(header.entries.size(), 6u);
    EXPECT_EQ(header.entries.at(L"HOV Version: "), suiteVersion);
}

TEST(BuildLogHeader, LeavesOutASuiteThatTellsNoVersion)
{
    SuiteProgram const suite(SuiteProgram::Kind::WithoutVersion);
    auto const header = BuildLogHeader();
    EXPECT_EQ(header.entries.size(), 5u);
    EXPECT_FALSE(header.entries.contains(L"HOV Version: "));
}

TEST(BuildLogHeader, LeavesOutASuiteWhoseFolderCannotBeHad)
{
    SuiteProgram const suite;
    RegGetValueCall const fault([](auto...) { return LSTATUS{ERROR_FILE_NOT_FOUND}; });
    auto const header = BuildLogHeader();
    EXPECT_EQ(header.entries.size(), 5u);
    EXPECT_FALSE(header.entries.contains(L"HOV Version: "));
}

TEST(BuildLogHeader, DoesNotTakeAProgramInTheCurrentFolderForTheSuite)
{
    TemporaryFolder const folder;
    CreateDirectoryW((folder / L"HOV").c_str(), nullptr);
    EXPECT_TRUE(CopyFileW(VERSIONED_PROGRAM, (folder / L"HOV\\Tessaline.exe").c_str(), FALSE));
    CurrentFolder const current(folder.Path());
    RegGetValueCall const fault([](auto...) { return LSTATUS{ERROR_FILE_NOT_FOUND}; });
    EXPECT_EQ(BuildLogHeader().entries.size(), 5u);
}

// So is one in a folder too long for a path.
TEST(BuildLogHeader, LeavesOutASuiteWhosePathCannotBeMade)
{
    RegGetValueCall const longFolder([](auto, HKEY, auto, auto, DWORD, DWORD*, void* data, DWORD*) {
        auto* const text = static_cast<wchar_t*>(data);
        std::fill_n(text, MAX_PATH - 1, L'a');
        text[MAX_PATH - 1] = L'\0';
        return LSTATUS{ERROR_SUCCESS};
    });
    EXPECT_EQ(BuildLogHeader().entries.size(), 5u);
}

TEST(BuildLogHeader, KnowsWindows11ByItsBuild)
{
    WindowsOfBuild const windows(22'000);
    auto const header = BuildLogHeader();
    EXPECT_EQ(header.entries.at(L"OS Name: "), L"Windows 11");
    EXPECT_EQ(header.entries.at(L"OS Version: "), L"10.0.0");
}

TEST(BuildLogHeader, HasAnEmptyBuildWhenThatCannotBeRead)
{
    GetVersionCall const fault(Failing(FALSE, ERROR_INVALID_PARAMETER));
    EXPECT_EQ(BuildLogHeader().entries.at(L"OS Build Version: "), L"");
}

TEST(BuildLogHeader, CallsASystemThatTellsNothingUnknown)
{
    VerifyVersionCall const fault(Failing(FALSE, ERROR_OLD_WIN_VERSION));
    EXPECT_EQ(BuildLogHeader().entries.at(L"OS Name: "), L"UNKNOWN");
}

// Each allocation fails in turn: some failures lose the suite's entry, others the whole header; nothing else is lost.
TEST(BuildLogHeader, LosesAnEntryOrIsNotMadeWhenMemoryIsShort)
{
    SuiteProgram const suite;
    auto withoutSuite = 0;
    auto notMade = 0;
    for (auto turn = 0;; ++turn)
    {
        auto const held = HeldBlocks();
        ShortMoment const moment(turn);
        try
        {
            auto const header = BuildLogHeader();
            if (!moment.HasPassed())
            {
                break;
            }
            withoutSuite += header.entries.contains(L"HOV Version: ") ? 0 : 1;
        }
        catch (std::bad_alloc const&)
        {
            ++notMade;
        }
        EXPECT_EQ(HeldBlocks(), held);
    }
    EXPECT_GT(withoutSuite, 0);
    EXPECT_GT(notMade, 0);
}
