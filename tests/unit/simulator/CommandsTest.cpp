#include "simulator/cli/Commands.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace
{

// No command here reaches a broker: a wrong call is refused before.
class WrongCalls : public testing::TestWithParam<sim::Words>
{
};

} // namespace

TEST_P(WrongCalls, EndWith2)
{
    EXPECT_EQ(sim::RunCommand(GetParam()), 2);
}

INSTANTIATE_TEST_SUITE_P(Commands, WrongCalls,
                         testing::Values(sim::Words{L"lunch"}, sim::Words{L"protocol"}, sim::Words{L"status", L"now"},
                                         sim::Words{L"launch", L"a", L"b"}, sim::Words{L"log", L"--folow"},
                                         sim::Words{L"events", L"all"}, sim::Words{L"help", L"lunch"},
                                         sim::Words{L"fault"}, sim::Words{L"fault", L"CoreApplication.Exit", L"later"},
                                         sim::Words{L"push", L"a", L"b"}, sim::Words{L"clock", L"+1h", L"+1h"},
                                         sim::Words{L"cancel-tasks"}, sim::Words{L"cancel-tasks", L"abort"},
                                         sim::Words{L"revoke-channel", L"x"}, sim::Words{L"tasks", L"x"},
                                         sim::Words{L"settings", L"x"}, sim::Words{L"play", L"--colour"},
                                         sim::Words{L"play", L"a", L"b"}, sim::Words{L"page"},
                                         sim::Words{L"page", L"a", L"b"}));

TEST(Commands, HelpIsThereForEachOfThem)
{
    EXPECT_EQ(sim::RunCommand({}), 0);
    for (auto const& command : sim::Commands())
    {
        EXPECT_EQ(sim::RunCommand({L"help", std::wstring(command.name)}), 0);
        EXPECT_FALSE(command.summary.empty());
    }
}

TEST(Commands, NeedADevice)
{
    SetEnvironmentVariableW(L"VELMO_SIM_HOME", nullptr);
    EXPECT_EQ(sim::RunCommand({L"status"}), 1);
}

TEST(Commands, TheLogOfADeviceWithoutAPackageIsRefused)
{
    test::TemporaryFolder const folder;
    SetEnvironmentVariableW(L"VELMO_SIM_HOME", folder.Path().c_str());
    EXPECT_EQ(sim::RunCommand({L"log"}), 1);
    SetEnvironmentVariableW(L"VELMO_SIM_HOME", nullptr);
}
