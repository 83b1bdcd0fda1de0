#include "simulator/doctor/LastWake.h"

#include <gtest/gtest.h>

using doctor::Result;
using doctor::Stage;

namespace
{

// The device was switched on at 100.
class LastWake : public testing::Test
{
  protected:
    using Found = std::vector<std::pair<Stage, Result>>;

    void Add(std::wstring const& kind, std::vector<std::wstring> details = {})
    {
        m_journal.push_back({++m_time, kind, std::move(details)});
    }

    // A push whose task is started.
    void Start(std::wstring const& wake)
    {
        Add(L"push-sent", {L"bytes=5", L"wake=" + wake});
        Add(L"task-started", {L"instance=2", L"name=Push", L"wake=" + wake});
    }

    void Activate(std::wstring const& wake)
    {
        Start(wake);
        Add(L"activated", {L"kind=background-task", L"name=Push", L"wake=" + wake});
    }

    void Launch(std::wstring const& wake)
    {
        Activate(wake);
        Add(L"desktop-started", {L"pid=7", L"group=NotificationReceived", L"wake=" + wake});
    }

    Found Look()
    {
        m_state.clock.since = 100;
        m_findings = sim::LastWakeFindings(m_journal, m_state);
        Found found;
        for (auto const& finding : m_findings)
        {
            found.emplace_back(finding.stage, finding.result);
        }
        return found;
    }

    sim::DeviceState m_state;
    std::vector<sim::Event> m_journal;
    sim::Moment m_time = 100;
    std::vector<doctor::Finding> m_findings;
};

} // namespace

TEST_F(LastWake, IsFollowedToTheEndOfItsTask)
{
    Launch(L"1");
    Add(L"task-completed", {L"instance=2", L"wake=1"});
    Add(L"desktop-exited", {L"pid=7", L"wake=1"});
    EXPECT_EQ(Look(), (Found{{Stage::Woken, Result::Worked},
                             {Stage::ComponentLaunched, Result::Worked},
                             {Stage::TaskCompleted, Result::Worked}}));
    EXPECT_TRUE(m_findings[0].what.starts_with("Wake 1, a push at ")) << m_findings[0].what;
    EXPECT_TRUE(m_findings[0].what.ends_with(" came to the app's process, as instance 2.")) << m_findings[0].what;
    EXPECT_TRUE(m_findings[1].what.ends_with(" started the desktop component, for NotificationReceived."));
}

TEST_F(LastWake, IsTheNewestOne)
{
    Launch(L"1");
    Add(L"push-sent", {L"wake=2"});
    Add(L"task-completed", {L"instance=2", L"wake=1"}); // the first one ends when the second has come
    EXPECT_EQ(Look(), (Found{{Stage::Woken, Result::Failed}}));
    EXPECT_TRUE(m_findings[0].what.starts_with("Wake 2, a push at ")) << m_findings[0].what;
    EXPECT_TRUE(m_findings[0].what.ends_with(" has not started its task.")) << m_findings[0].what;
}

TEST_F(LastWake, IsToldElsewhereWhileItWaits)
{
    Launch(L"1");
    Add(L"push-sent", {L"wake=2"});
    m_state.tasks.waiting = {{2, L"Push", L"instance 2 runs"}};
    EXPECT_EQ(Look(), Found{});
}

TEST_F(LastWake, MayBeATimer)
{
    Add(L"task-started", {L"instance=1", L"wake=4"});
    EXPECT_EQ(Look(), (Found{{Stage::Woken, Result::CannotBeTold}}));
    EXPECT_TRUE(m_findings[0].what.starts_with("Wake 4, a timer at ")) << m_findings[0].what;
}

TEST_F(LastWake, IsNotSeenWithoutPushAndTimer)
{
    m_journal.push_back({99, L"push-sent", {L"wake=7"}}); // before the device was switched on
    Add(L"task-started", {L"instance=1"});                // of the app service
    EXPECT_EQ(Look(), (Found{{Stage::Woken, Result::NotSeen}}));
}

TEST_F(LastWake, SaysWhyAPushWasLost)
{
    std::vector<std::string> said;
    for (auto const* reason : {L"no-channel", L"no-task", L"no-network", L"logged-off", L"asleep", L"unheard-of"})
    {
        Launch(L"1");
        Add(L"push-lost", {std::wstring(L"reason=") + reason});
        Add(L"desktop-exited", {L"pid=7", L"wake=1"});
        EXPECT_EQ(Look(), (Found{{Stage::Woken, Result::Failed}}));
        EXPECT_NE(m_findings[0].advice, "");
        auto const& what = m_findings[0].what;
        said.push_back(what.substr(what.find("lost: ")));
    }
    EXPECT_EQ(said, (std::vector<std::string>{"lost: the app has no open channel.",
                                              "lost: no task is registered that a push triggers.",
                                              "lost: the device has no network.", "lost: nobody is logged on.",
                                              "lost: the device is asleep.", "lost: unheard-of."}));
}

TEST_F(LastWake, SaysThatThePushServiceRefused)
{
    Add(L"push-refused", {L"status=410"});
    EXPECT_EQ(Look(), (Found{{Stage::Woken, Result::Failed}}));
    EXPECT_TRUE(m_findings[0].what.ends_with(", with 410.")) << m_findings[0].what;
}

TEST_F(LastWake, BreaksWhereNoProcessTakesIt)
{
    Start(L"1");
    EXPECT_EQ(Look(), (Found{{Stage::Woken, Result::CannotBeTold}}));
    Add(L"task-lost", {L"instance=2", L"wake=1"});
    EXPECT_EQ(Look(), (Found{{Stage::StartUp, Result::Failed}}));
    EXPECT_TRUE(m_findings[0].what.ends_with(" is lost: no process of the app took instance 2.")) << m_findings[0].what;
}

TEST_F(LastWake, BreaksAtTheDesktopComponent)
{
    Activate(L"1");
    EXPECT_EQ(Look(), (Found{{Stage::Woken, Result::Worked},
                             {Stage::ComponentLaunched, Result::CannotBeTold},
                             {Stage::TaskCompleted, Result::CannotBeTold}}));
    auto const running = m_journal;
    Add(L"task-completed", {L"instance=2", L"wake=1"});
    EXPECT_EQ(Look().at(1), (Found::value_type{Stage::ComponentLaunched, Result::Failed}));
    m_journal = running;
    Add(L"desktop-not-started", {L"group=NotificationReceived", L"result=0x80070002", L"wake=1"});
    EXPECT_EQ(Look().at(1), (Found::value_type{Stage::ComponentLaunched, Result::Failed}));
    EXPECT_TRUE(m_findings[1].what.ends_with(" did not start the desktop component: 0x80070002."));
}

TEST_F(LastWake, BreaksAtTheEndOfTheTask)
{
    Launch(L"1");
    EXPECT_EQ(Look().at(2), (Found::value_type{Stage::TaskCompleted, Result::CannotBeTold}));
    Add(L"task-cancelled", {L"instance=2", L"wake=1", L"reason=ExecutionTimeExceeded"});
    EXPECT_EQ(Look().at(2), (Found::value_type{Stage::TaskCompleted, Result::Failed}));
    EXPECT_TRUE(m_findings[2].what.ends_with(" was cancelled: ExecutionTimeExceeded.")) << m_findings[2].what;
    Add(L"task-lost", {L"instance=2", L"wake=1"});
    EXPECT_EQ(Look().at(2), (Found::value_type{Stage::TaskCompleted, Result::Failed}));
    EXPECT_TRUE(m_findings[2].what.ends_with(" was not completed: the app's process ended before."));
}
