#include "simulator/base/Text.h"
#include "tests/unit/simulator/MessageEquality.h"
#include "tests/unit/simulator/ServicesFixture.h"

namespace
{

// What the platform says of its device.
class DescribeDevice : public ServicesFixture
{
  protected:
    sim::DeviceState State() { return PlatformFixture::Ask(m_commandLine, sim::DescribeDevice{}); }
};

} // namespace

TEST_F(DescribeDevice, NamesThePackageAndItsProcesses)
{
    auto const state = State();
    ASSERT_TRUE(state.package);
    EXPECT_EQ(state.package->family, family);
    EXPECT_EQ(state.package->version, L"1.0.0.0");
    EXPECT_EQ(state.package->folder, m_layout);
    EXPECT_EQ(state.processes, (sim::ProcessState{true, false, 0, 0}));
    Open(m_caller);
    EXPECT_EQ(State().processes, (sim::ProcessState{true, false, 0, 1}));
}

TEST_F(DescribeDevice, SaysThatNothingIsThere)
{
    KillApp();
    Ask(sim::UnregisterPackage{});
    auto const state = State();
    EXPECT_FALSE(state.package);
    EXPECT_FALSE(state.channel);
    EXPECT_EQ(state.processes, sim::ProcessState{});
    EXPECT_EQ(state.tasks, sim::WakeState{});
}

TEST_F(DescribeDevice, HasTheChannelUntilItEnds)
{
    auto const created = PlatformFixture::Ask(m_app, sim::CreateChannel{});
    auto const state = State();
    ASSERT_TRUE(state.channel);
    EXPECT_EQ(*state.channel, (sim::ChannelState{created.uri, created.expiry}));
    Ask(sim::RevokeChannel{});
    EXPECT_FALSE(State().channel);
}

TEST_F(DescribeDevice, HasTheClockAndWhenTheDeviceWasSwitchedOn)
{
    auto const before = State().clock;
    EXPECT_EQ(before.minutesAhead, 0);
    EXPECT_EQ(before.since, Events().front().time);
    AdvanceClock(day);
    auto const after = State().clock;
    EXPECT_EQ(after.minutesAhead, day);
    EXPECT_EQ(after.now - before.now, day * sim::Clock::minute);
    EXPECT_EQ(after.since, before.since);
}

TEST_F(DescribeDevice, HasTheRegistrationsAndWhatWaits)
{
    PlatformFixture::Ask(m_app, sim::CreateChannel{});
    RegisterPush(L"One");
    RegisterTimer(L"Daily", day);
    Push();
    Push();
    Ask(sim::SetCondition{sim::Condition::AccessDenied, true});
    auto const tasks = State().tasks;
    ASSERT_EQ(tasks.registered.size(), 2u);
    EXPECT_EQ(tasks.registered[0], (sim::TaskState{L"One", sim::Trigger::Push, 0}));
    EXPECT_EQ(tasks.registered[1],
              (sim::TaskState{L"Daily", sim::Trigger::Timer, State().clock.now + day * sim::Clock::minute}));
    EXPECT_EQ(tasks.waiting, (std::vector<sim::WaitingState>{{2, L"One", L"instance 1 runs"}}));
    EXPECT_EQ(tasks.conditions, std::vector<sim::Condition>{sim::Condition::AccessDenied});
}
