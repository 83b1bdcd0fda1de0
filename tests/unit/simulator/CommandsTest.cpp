#include "simulator/cli/Commands.h"
#include "simulator/base/Handle.h"
#include "simulator/base/Text.h"
#include "simulator/base/Words.h"
#include "simulator/client/DeviceCommands.h"
#include "simulator/protocol/CancellationReason.h"
#include "simulator/protocol/Fault.h"
#include "simulator/scenario/Player.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <windows.h>

namespace
{

// No command here reaches a broker: usage errors are found first.
class CommandsCalledWronglyTest : public testing::TestWithParam<sim::Words>
{
};

// What a command writes.
std::wstring OutputOf(sim::Words const& words)
{
    test::TemporaryFolder const folder;
    auto const path = folder / L"output.txt";
    auto* const before = GetStdHandle(STD_OUTPUT_HANDLE);
    {
        sim::Handle const file(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                                           FILE_ATTRIBUTE_NORMAL, nullptr));
        SetStdHandle(STD_OUTPUT_HANDLE, file.Get());
        EXPECT_EQ(sim::RunCommand(words), 0);
        SetStdHandle(STD_OUTPUT_HANDLE, before);
    }
    return sim::FromUtf8(test::ReadBytes(path));
}

// The first words of its lines.
std::vector<std::wstring> LineStarts(std::wstring const& text)
{
    std::vector<std::wstring> starts;
    for (auto const& line : test::Split(text, L"\n"))
    {
        auto const start = line.find_first_not_of(L' ');
        starts.push_back(start == line.npos ? L"" : line.substr(start, line.find(L' ', start) - start));
    }
    return starts;
}

bool Has(std::vector<std::wstring> const& texts, std::wstring_view text)
{
    return std::ranges::find(texts, text) != texts.end();
}

template <typename AnyCommand>
void ExpectHelpFor(AnyCommand const& command)
{
    auto const name = std::wstring(command.name);
    auto const usage = L"sim " + name + (command.arguments.empty() ? L"" : L" ") + std::wstring(command.arguments);
    auto const help = OutputOf({L"help", name});
    EXPECT_EQ(help.find(usage + L"\n  " + std::wstring(command.summary) + L"\n"), 0u) << sim::ToUtf8(help);
    EXPECT_NE(OutputOf({L"help"}).find(L"\n  " + usage + L" "), std::wstring::npos) << sim::ToUtf8(usage);
    EXPECT_FALSE(command.summary.empty());
}

} // namespace

TEST_P(CommandsCalledWronglyTest, EndWith2)
{
    EXPECT_EQ(sim::RunCommand(GetParam()), 2);
}

INSTANTIATE_TEST_SUITE_P(
    CommandsTest, CommandsCalledWronglyTest,
    testing::Values(
        sim::Words{L"lunch"}, sim::Words{L"protocol"}, sim::Words{L"status", L"now"}, sim::Words{L"launch", L"a", L"b"},
        sim::Words{L"log", L"--folow"}, sim::Words{L"events", L"all"}, sim::Words{L"help", L"lunch"},
        sim::Words{L"fault"}, sim::Words{L"fault", L"CoreApplication.Exit", L"later"}, sim::Words{L"push", L"a", L"b"},
        sim::Words{L"clock", L"+1h", L"+1h"}, sim::Words{L"cancel-tasks"}, sim::Words{L"cancel-tasks", L"abort"},
        sim::Words{L"revoke-channel", L"x"}, sim::Words{L"tasks", L"x"}, sim::Words{L"settings", L"x"},
        sim::Words{L"play", L"--colour"}, sim::Words{L"play", L"a", L"b"}, sim::Words{L"play", L"--record"},
        sim::Words{L"play", L"a", L"--record"}, sim::Words{L"play", L"--htm"}, sim::Words{L"play", L"--html"},
        sim::Words{L"play", L"--html", L"--verdict", L"a"}, sim::Words{L"play", L"--record", L"--html", L"page", L"a"},
        sim::Words{L"play", L"--record", L"--trace", L"file", L"a"},
        sim::Words{L"play", L"--html", L"C:\\KZEB.log", L"a"}, sim::Words{L"play", L"--trace", L"C:\\kzeb.LOG", L"a"},
        sim::Words{L"play", L"--verdict", L"--record", L"a"}, sim::Words{L"restart", L"x"}, sim::Words{L"page"},
        sim::Words{L"page", L"a", L"b"}));

TEST(CommandsTest, HelpIsThereForEachOfThem)
{
    for (auto const& command : sim::DeviceCommands())
    {
        ExpectHelpFor(command);
    }
    for (auto const& command : sim::OwnCommands())
    {
        ExpectHelpFor(command);
    }
}

TEST(CommandsTest, HelpForPlayingNamesTheSteps)
{
    EXPECT_NE(OutputOf({L"help", L"play"}).find(sim::Player::Help()), std::wstring::npos);
}

TEST(CommandsTest, WithoutAnyWordTheyAreListed)
{
    EXPECT_EQ(OutputOf({}), OutputOf({L"help"}));
}

TEST(CommandsTest, HelpNamesEachKindOfFault)
{
    auto const starts = LineStarts(OutputOf({L"help", L"fault"}));
    EXPECT_EQ(sim::FaultKindNames().size(), static_cast<std::size_t>(sim::FaultKind::Last) + 1);
    for (auto const name : sim::FaultKindNames())
    {
        EXPECT_TRUE(Has(starts, name)) << sim::ToUtf8(name);
    }
}

TEST(CommandsTest, HelpNamesEachReasonForACancellation)
{
    auto const help = OutputOf({L"help", L"cancel-tasks"});
    for (auto const& name : sim::SplitWords(sim::CancellationReason::Names()))
    {
        EXPECT_NE(help.find(name), std::wstring::npos) << sim::ToUtf8(name);
    }
}

TEST(CommandsTest, NeedADevice)
{
    SetEnvironmentVariableW(L"VELMO_SIM_HOME", nullptr);
    EXPECT_EQ(sim::RunCommand({L"status"}), 1);
}

TEST(CommandsTest, LogsAreShownAsTheDoctorShowsThem)
{
    test::TemporaryFolder const folder;
    test::WriteBytes(folder / L"KZ\u00C9B.log",
                     "01/05/24 09:30:12:045 | [INFO] |  | ZEB | ZEB | ZEBMain |  | ZEB | 7 | one\r\n"
                     "01/05/24 09:30:13:000 | [WARN] |  | ZEB | ZEB | AppService |  | ZEB | 8 | two\r\n");
    EXPECT_EQ(
        OutputOf({L"log", folder / L"KZ\u00C9B.log"}),
        L"2024-01-05 09:30:12.045 INFO  7     ZEBMain    one\n2024-01-05 09:30:13.000 WARN  8     AppService two\n");
    EXPECT_EQ(OutputOf({L"log", L"--level", L"warn", folder.Path()}),
              L"2024-01-05 09:30:13.000 WARN  8     AppService two\n");
    EXPECT_EQ(sim::RunCommand({L"log", folder / L"nowhere"}), 1);
}

TEST(CommandsTest, TheLogOfADeviceWithoutAPackageIsRefused)
{
    test::TemporaryFolder const folder;
    SetEnvironmentVariableW(L"VELMO_SIM_HOME", folder.Path().c_str());
    EXPECT_EQ(sim::RunCommand({L"log"}), 1);
    SetEnvironmentVariableW(L"VELMO_SIM_HOME", nullptr);
}
