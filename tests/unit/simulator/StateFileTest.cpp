#include "simulator/base/Files.h"
#include "tests/support/Files.h"
#include "tests/unit/simulator/ServicesFixture.h"

namespace
{

// What the platform makes of its files when the device is switched on again.
class StateFileTest : public ServicesFixture
{
  protected:
    void RestartWith(std::wstring const& file, std::string const& content)
    {
        test::WriteBytes(file, content);
        Restart();
    }

    // The journal and the status say so, and the file is there as it was.
    void ExpectSetAside(std::wstring const& file, std::wstring const& reason, std::string const& content)
    {
        auto const kept = file + L".damaged";
        auto const events = Events();
        auto const damaged = std::ranges::find(events, L"state-damaged", &sim::Event::kind);
        ASSERT_NE(damaged, events.end());
        EXPECT_EQ(damaged->details, (Texts{L"file=" + file, L"reason=" + reason, L"kept=" + kept}));
        EXPECT_EQ(test::ReadBytes(kept), content);
        EXPECT_NE(Ask(sim::ShowStatus{}).find(L"\ndamaged   " + kept + L" was set aside"), std::wstring::npos);
    }

    void ExpectNoMoreDamage()
    {
        Reports();
        Restart();
        EXPECT_EQ(Reports(), Texts{});
    }

    std::wstring const m_tasksFile = m_device.TasksFile(family);
    std::wstring const m_channelFile = m_device.ChannelFile(family);
};

} // namespace

TEST_F(StateFileTest, IsNotTouchedWhenItIsAsItWasWritten)
{
    RegisterPush(L"A Task");
    RegisterTimer(L"Daily", day);
    Ask(m_app, sim::CreateChannel{});
    AdvanceClock(5);
    ExpectNoMoreDamage();
    EXPECT_EQ(Ask(sim::ShowStatus{}).find(L"damaged"), std::wstring::npos);
    EXPECT_EQ(TasksOf(m_app).tasks.size(), 2u);
}

TEST_F(StateFileTest, OfTasksIsSetAsideAndKeepsItsOtherTasks)
{
    std::string const good = "an-id 'A Task' push 0 recurring 0\r\n";
    auto const content = good + "nonsense\r\n";
    RestartWith(m_tasksFile, content);
    ExpectSetAside(m_tasksFile, L"line 2: it is not ID NAME push|timer MINUTES once|recurring DUE", content);
    EXPECT_EQ(TasksOf(m_app), (sim::TaskList{{{L"an-id", L"A Task"}}}));
    EXPECT_EQ(test::ReadBytes(m_tasksFile), good);
    ExpectNoMoreDamage();
}

TEST_F(StateFileTest, WithATimerOf0MinutesIsDamaged)
{
    std::string const content = "an-id Daily timer 0 recurring 0\r\n";
    RestartWith(m_tasksFile, content);
    ExpectSetAside(m_tasksFile, L"line 1: a timer of 0 minutes is too short", content);
    AdvanceClock(day);
    EXPECT_TRUE(m_activations.empty());
    EXPECT_EQ(TasksOf(m_app), sim::TaskList{});
}

TEST_F(StateFileTest, OfTasksTakesNoWordsThatMeanNothing)
{
    for (auto const* line : {"'' Name push 0 once 0", "id Name neither 0 once 0", "id Name timer many once 0",
                             "id Name timer 4294967296 once 0", "id Name timer 15 twice 0", "id Name timer 15 once -1",
                             "id Name timer 15 once 9223372036854775808", "id Name timer 15 once 0 more"})
    {
        RestartWith(m_tasksFile, std::string(line) + "\r\n");
        EXPECT_EQ(TasksOf(m_app), sim::TaskList{}) << line;
        EXPECT_FALSE(sim::FileExists(m_tasksFile)) << line;
    }
}

TEST_F(StateFileTest, ThatEndsInTheMiddleIsDamaged)
{
    RestartWith(m_device.ClockFile(), "minutes-ahead 1");
    ExpectSetAside(m_device.ClockFile(), L"line 1: the file ends in the middle of it", "minutes-ahead 1");
}

TEST_F(StateFileTest, OfTheClockIsSetAside)
{
    RestartWith(m_device.ClockFile(), "minutes-ahead 525600001\r\n");
    ExpectSetAside(m_device.ClockFile(), L"line 1: 525600001 is no minutes-ahead of at most 525600000",
                   "minutes-ahead 525600001\r\n");
    AdvanceClock(5);
    ExpectNoMoreDamage();
}

TEST_F(StateFileTest, OfTheChannelIsSetAside)
{
    RestartWith(m_channelFile, "'unclosed\r\n");
    ExpectSetAside(m_channelFile, L"line 1: a quote ' is not closed", "'unclosed\r\n");
    EXPECT_EQ(Push(), L"lost: the app has no open channel");
    EXPECT_EQ(Ask(m_app, sim::CreateChannel{}).result, 0);
    ExpectNoMoreDamage();
}

TEST_F(StateFileTest, ThatCannotBeReadIsReportedAndThePlatformGoesOn)
{
    test::WriteBytes(m_tasksFile, "an-id 'A Task' push 0 recurring 0\r\n");
    {
        sim::Handle const locked(
            CreateFileW(m_tasksFile.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
        Restart();
    }
    auto const reports = Reports();
    ASSERT_FALSE(reports.empty());
    auto const& damaged = reports.front();
    EXPECT_NE(damaged.find(L"state-damaged file="), std::wstring::npos) << testing::PrintToString(damaged);
    EXPECT_NE(damaged.find(L" not-kept='"), std::wstring::npos) << testing::PrintToString(damaged);
    EXPECT_TRUE(sim::FileExists(m_tasksFile));
    Restart();
    EXPECT_EQ(TasksOf(m_app).tasks.size(), 1u);
}

TEST_F(StateFileTest, IsRemovedWithTheDevice)
{
    RestartWith(m_device.ClockFile(), "nonsense\r\n");
    m_device.Clear();
    EXPECT_FALSE(sim::FileExists(m_device.ClockFile() + L".damaged"));
}
