#include "tests/unit/simulator/PlatformFixture.h"

#include <thread>
#include <windows.h>

namespace
{

constexpr std::uint32_t loggingOff = 2;
constexpr std::uint32_t resourceRevocation = 10;

using sim::ConnectionEnd;

// The services from the start of the app's process to its end.
class PlatformServicesTest : public PlatformFixture
{
  protected:
    struct Caller
    {
        PeerPointer peer;
        Asked<sim::OpenConnection> opened;
    };

    // A desktop program that has asked for a connection.
    Caller NewCaller()
    {
        auto const peer = std::make_shared<FakePeer>();
        return {peer, AskLater(peer, OpenService())};
    }

    // The content of the last activation that the app was sent.
    template <typename Content>
    static Content LastActivation(FakePeer const& app)
    {
        auto const activations = ActivationsOf(app);
        auto const* const content = activations.empty() ? nullptr : std::get_if<Content>(&activations.back().content);
        EXPECT_TRUE(content);
        return content ? *content : Content();
    }

    // Registers a task that a push triggers and opens the channel, and lets the app exit.
    void RegisterPushTask()
    {
        Register();
        Launch();
        auto const app = Connect(0);
        Take(app, 1);
        EXPECT_EQ(Ask(app, sim::RegisterTask{.name = L"A Task"}).result, 0);
        EXPECT_EQ(Ask(app, sim::CreateChannel{}).result, 0);
        Exit(0, app);
    }

    // An app that was started by a push, and that has completed its task.
    PeerPointer AppThatIsDone()
    {
        RegisterPushTask();
        SwitchOn();
        Ask(sim::Push{});
        auto app = Connect(0);
        Return(app, 1, 1);
        Say(app, sim::TaskCompleted{1});
        EXPECT_EQ(LastEvent().kind, L"app-idle");
        return app;
    }

    static constexpr unsigned idle = sim::Limits{}.idle;
    static constexpr unsigned suspended = sim::Limits{}.suspended;
};

} // namespace

TEST_F(PlatformServicesTest, StartsTheAppForACaller)
{
    Register();
    auto const caller = NewCaller();
    ASSERT_EQ(m_processes->started.size(), 1u);
    auto const app = Connect(0);
    EXPECT_EQ(app->received, Sent(Welcome(), sim::Activate{{1, sim::ServiceStart{1, 1, service, L""}}}));
    Reports();
    Return(app, 1, 1);
    EXPECT_EQ(caller.opened.Take(), (sim::ConnectionOpened{sim::OpenStatus::Success, 1}));
    EXPECT_EQ(Reports(),
              (Texts{L"activated kind=app-service name=a.service", L"app-service-opened connection=1 name=a.service"}));
}

TEST_F(PlatformServicesTest, FindsOneProcessForTwoCallersAtTheSameInstant)
{
    Register();
    auto const first = std::make_shared<FakePeer>();
    auto const second = std::make_shared<FakePeer>();
    std::thread other([&] { m_platform->Received(first, sim::Request{1, OpenService()}); });
    m_platform->Received(second, sim::Request{1, OpenService()});
    other.join();
    Run();
    EXPECT_EQ(m_processes->started.size(), 1u);
    auto const app = Connect(0);
    EXPECT_EQ(app->received.size(), 3u); // the welcome and two activations
    Return(app, 1, 1);
    Return(app, 2, 2);
    ASSERT_EQ(first->received.size(), 1u);
    ASSERT_EQ(second->received.size(), 1u);
    auto const numberOf = [](PeerPointer const& peer) {
        return std::get<sim::ConnectionOpened>(peer->TakeAnswer(1).value()).connection;
    };
    EXPECT_NE(numberOf(first), numberOf(second));
}

TEST_F(PlatformServicesTest, CarriesARequestFromProcessToProcess)
{
    Register();
    auto const caller = NewCaller();
    auto const app = Connect(0);
    Return(app, 1, 1);
    auto const response = AskLater(caller.peer, sim::SendRequest{1, ConnectionEnd::Caller, "a set"});
    EXPECT_EQ(app->received.back(), sim::ToProcess(sim::RequestArrived{1, ConnectionEnd::Service, 1, "a set"}));
    EXPECT_EQ(Ask(app, sim::GiveResponse{1, "another"}).status, sim::ResponseStatus::Success);
    Say(app, sim::RequestCompleted{1});
    EXPECT_EQ(response.Take(), (sim::ResponseGiven{sim::ResponseStatus::Success, "another"}));
}

TEST_F(PlatformServicesTest, TellsTheCallerOfACrash)
{
    Register();
    auto const caller = NewCaller();
    auto const app = Connect(0);
    Return(app, 1, 1);
    caller.opened.Take();
    auto const response = AskLater(caller.peer, sim::SendRequest{1, ConnectionEnd::Caller, ""});
    Close(app);
    End(0, 3);
    EXPECT_EQ(response.Take(), (sim::ResponseGiven{sim::ResponseStatus::Failure, ""}));
    EXPECT_EQ(caller.peer->received, Sent(sim::OtherEndClosed{1, ConnectionEnd::Caller, sim::ClosedStatus::Canceled}));
    EXPECT_EQ(LastEvent().Text(), L"app-crashed pid=100 code=3");
    EXPECT_EQ(m_processes->started.size(), 1u);
}

TEST_F(PlatformServicesTest, TellsTheCallerOfAnAppThatDoesNotComeUp)
{
    Register();
    auto const caller = NewCaller();
    End(0, 3); // it never connected
    EXPECT_EQ(caller.opened.Take(), sim::ConnectionOpened{sim::OpenStatus::AppUnavailable});
    EXPECT_TRUE(caller.peer->received.empty());
}

TEST_F(PlatformServicesTest, TellsTheCallerOfAnAppThatDoesNotStart)
{
    Register();
    m_processes->error = ERROR_BAD_EXE_FORMAT;
    auto const caller = NewCaller();
    EXPECT_EQ(caller.opened.Take(), sim::ConnectionOpened{sim::OpenStatus::AppUnavailable});
    EXPECT_TRUE(caller.peer->received.empty());
}

TEST_F(PlatformServicesTest, StartsANewProcessForACallerThatComesWhileTheAppEnds)
{
    Register();
    Launch();
    auto const first = Connect(0);
    Take(first, 1);
    Say(first, sim::ExitAnnounced{});
    auto const caller = NewCaller();
    Close(first);
    End(0, 0);
    ASSERT_EQ(m_processes->started.size(), 2u);
    Return(Connect(1), 2, 1);
    EXPECT_EQ(caller.opened.Take(), (sim::ConnectionOpened{sim::OpenStatus::Success, 1}));
}

TEST_F(PlatformServicesTest, TellsTheAppOfACallerThatDies)
{
    Register();
    auto const caller = NewCaller();
    auto const app = Connect(0);
    Return(app, 1, 1);
    app->received.clear();
    Close(caller.peer);
    EXPECT_EQ(app->received, Sent(sim::OtherEndClosed{1, ConnectionEnd::Service, sim::ClosedStatus::Canceled},
                                  sim::TaskCancelled{1, 1, resourceRevocation}));
}

TEST_F(PlatformServicesTest, TellsTheAppsOwnRequestsFromADesktopPrograms)
{
    Register();
    Launch();
    auto const app = Connect(0);
    auto const program = Connect(7);
    EXPECT_EQ(program->received, Sent(sim::NotTheApp{}));
    EXPECT_EQ(Ask(program, sim::CreateChannel{}), sim::ChannelCreated{elementNotFound});
    EXPECT_EQ(Ask(app, sim::CreateChannel{}).result, 0);
}

TEST_F(PlatformServicesTest, WakesTheAppWithAPush)
{
    RegisterPushTask();
    EXPECT_EQ(Ask(sim::Push{L"a payload"}), L"sent");
    ASSERT_EQ(m_processes->started.size(), 2u);
    EXPECT_EQ(LastActivation<sim::TaskStart>(*Connect(1)).payload, L"a payload");
}

TEST_F(PlatformServicesTest, EndsAnAppThatHasNothingLeftToDo)
{
    auto const app = AppThatIsDone();
    Pass(idle - 1);
    EXPECT_EQ(ActivationsOf(*app).size(), 1u);
    Pass(1);
    Take(app, 2);
    Say(app, sim::SuspendingCompleted{});
    EXPECT_EQ(m_processes->suspended, std::vector<unsigned long>{100});
    Pass(suspended - 1);
    EXPECT_TRUE(m_processes->killed.empty());
    Pass(1);
    EXPECT_EQ(m_processes->killed, std::vector<unsigned long>{100});
    Close(app);
    End(0, 1);
    EXPECT_EQ(LastEvent().kind, L"app-terminated");
}

TEST_F(PlatformServicesTest, GivesToTheNextProcessWhatTheEndedOneDidNotTake)
{
    auto const app = AppThatIsDone();
    Pass(idle);
    Take(app, 2);
    Say(app, sim::SuspendingCompleted{});
    Pass(suspended);
    NewCaller();
    EXPECT_EQ(ActivationsOf(*app).size(), 2u); // it gets no more
    EXPECT_TRUE(m_processes->resumed.empty());
    Close(app);
    End(0, 1);
    ASSERT_EQ(m_processes->started.size(), 2u);
    EXPECT_EQ(LastActivation<sim::ServiceStart>(*Connect(1)).service, service);
}

TEST_F(PlatformServicesTest, LeavesAnAppAloneThatTheUserHasLaunched)
{
    RegisterPushTask();
    Launch();
    auto const app = Connect(1);
    Take(app, 2);
    Ask(sim::Push{});
    Return(app, 3, 1);
    Say(app, sim::TaskCompleted{1});
    Pass(idle);
    EXPECT_EQ(LastEvent().Text(), L"task-completed instance=1 name='A Task' wake=1");
    EXPECT_TRUE(m_processes->killed.empty());
}

TEST_F(PlatformServicesTest, LeavesAnIdleAppAloneThatTheUserLaunchesMeanwhile)
{
    auto const app = AppThatIsDone();
    Pass(idle - 1);
    Launch();
    Pass(1);
    EXPECT_TRUE(m_processes->killed.empty());
}

TEST_F(PlatformServicesTest, EndsAnAppThatDoesNotCompleteItsCancelledTask)
{
    RegisterPushTask();
    SwitchOn();
    Ask(sim::Push{});
    auto const app = Connect(0);
    Return(app, 1, 1);
    Ask(sim::CancelTasks{loggingOff});
    EXPECT_EQ(app->received.back(), sim::ToProcess(sim::TaskCancelled{1, 0, loggingOff}));
    Pass(sim::Limits{}.afterCancel - 1);
    EXPECT_TRUE(m_processes->killed.empty());
    Pass(1);
    EXPECT_EQ(m_processes->killed, std::vector<unsigned long>{100});
}

TEST_F(PlatformServicesTest, RunsInstancesThatNoRegistrationIsBehind)
{
    sim::TaskStart const task{0, L"", L"A Task", sim::Trigger::Push, L""};
    Register();
    EXPECT_EQ(m_platform->StartInstance(task), 1u);
    auto const app = Connect(0);
    Return(app, 1, 1);
    m_platform->CancelInstance(1, loggingOff);
    EXPECT_EQ(app->received.back(), sim::ToProcess(sim::TaskCancelled{1, 0, loggingOff}));
    Say(app, sim::TaskCompleted{1});
    EXPECT_EQ(app->received.back(), sim::ToProcess(sim::TaskEnded{1, 0}));
    m_processes->error = ERROR_FILE_NOT_FOUND;
    Exit(0, app);
    EXPECT_EQ(m_platform->StartInstance(task), std::nullopt);
}

TEST_F(PlatformServicesTest, PutsTheClockForward)
{
    auto const clock = [&](std::int64_t minutes) {
        return sim::Clock::Text(m_time.Utc() + minutes * sim::Clock::minute);
    };
    EXPECT_EQ(Ask(sim::AdvanceClock{0}), clock(0));
    EXPECT_TRUE(Events().empty());
    EXPECT_EQ(Ask(sim::AdvanceClock{90}), clock(90));
    EXPECT_EQ(LastEvent().Text(), L"clock-advanced to='" + clock(90) + L"'");
    Pass(60'000);
    EXPECT_EQ(Ask(sim::AdvanceClock{0}), clock(90));
    EXPECT_EQ(Events().size(), 1u);
}

TEST_F(PlatformServicesTest, RunsATimerThatHasBecomeDue)
{
    Register();
    Launch();
    auto const app = Connect(0);
    Take(app, 1);
    Ask(app, sim::RegisterTask{.name = L"Daily", .trigger = sim::Trigger::Timer, .minutes = 24 * 60});
    Exit(0, app);
    Ask(sim::AdvanceClock{24 * 60});
    ASSERT_EQ(m_processes->started.size(), 2u);
    EXPECT_EQ(LastActivation<sim::TaskStart>(*Connect(1)).task, L"Daily");
}

TEST_F(PlatformServicesTest, RevokesTheChannel)
{
    RegisterPushTask();
    Ask(sim::RevokeChannel{});
    EXPECT_EQ(LastEvent().kind, L"channel-revoked");
    EXPECT_EQ(Ask(sim::Push{}), L"lost: the app has no open channel");
}

TEST_F(PlatformServicesTest, RefusesAPushThatIsTooLong)
{
    RegisterPushTask();
    EXPECT_EQ(RefusalOf(sim::Push{std::wstring(5'120, L'x')}),
              L"the push service refuses a payload of 5120 bytes or more");
}

TEST_F(PlatformServicesTest, RefusesAPushWithoutAPackage)
{
    EXPECT_EQ(RefusalOf(sim::Push{}), L"no package is registered: sim register FOLDER comes first");
}

TEST_F(PlatformServicesTest, ForgetsTheTasksOfARemovedPackage)
{
    RegisterPushTask();
    EXPECT_NE(Ask(sim::ShowTasks{}).find(L"A Task"), std::wstring::npos);
    Ask(sim::UnregisterPackage{});
    Register();
    EXPECT_EQ(Ask(sim::ShowTasks{}), L"registered:\nrunning:");
}
