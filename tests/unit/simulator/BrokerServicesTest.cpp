#include "simulator/model/Text.h"
#include "tests/unit/simulator/BrokerFixture.h"

#include <thread>

namespace
{

using Texts = std::vector<std::wstring>;

// The services as processes meet them, through the broker.
class BrokersServices : public Brokers
{
  protected:
    static sim::Message Open(std::wstring const& id) { return {L"ask", id, L"open-app-service", L"a.service", family}; }

    // A desktop program that has asked for a connection.
    std::shared_ptr<FakePeer> Caller() const
    {
        auto const caller = std::make_shared<FakePeer>();
        Say(caller, Open(L"q1"));
        return caller;
    }

    // The app's process has taken an activation and come back from it.
    void Return(std::shared_ptr<FakePeer> const& app, std::wstring const& activation,
                std::wstring const& instance) const
    {
        Say(app, {L"taken", activation});
        Say(app, {L"tell", L"task-returned", instance});
    }

    // Registers a task that a push triggers and opens the channel, and lets the app exit.
    void RegisterPushTask() const
    {
        Register();
        Ask({L"launch"});
        auto const app = Connect(0);
        Say(app, {L"taken", L"1"});
        Say(app, {L"ask", L"1", L"register-task", L"A Task", L"push", L"0", L"0"});
        Say(app, {L"ask", L"2", L"create-channel"});
        Exit(0, app);
    }

    std::wstring EventText(std::size_t fromTheEnd) const
    {
        auto const events = sim::ReadJournal(m_device.JournalFile());
        return events.at(events.size() - 1 - fromTheEnd).Text();
    }

    // Waits for an event that comes from another thread.
    void WaitForEvent(std::wstring const& kind) const
    {
        auto const follower = std::make_shared<Follower>(kind);
        m_broker->Received(follower, {L"follow"});
        follower->Wait();
        m_broker->Closed(follower);
    }

  private:
    class Follower : public sim::Peer
    {
      public:
        explicit Follower(std::wstring kind) : m_kind(std::move(kind)) {}

        void Send(sim::Message const& message) override
        {
            if (sim::ParseEvent(message.at(1))->kind == m_kind)
            {
                SetEvent(m_came.Get());
            }
        }

        void Wait() const { WaitForSingleObject(m_came.Get(), INFINITE); }

      private:
        std::wstring m_kind;
        sim::Handle m_came{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    };
};

} // namespace

TEST_F(BrokersServices, StartTheAppForACaller)
{
    Register();
    auto const caller = Caller();
    ASSERT_EQ(m_processes->started.size(), 1u);
    auto const app = Connect(0);
    EXPECT_EQ(app->received.back(), (Texts{L"activate", L"1", L"app-service", L"", L"1", L"1", L"a.service", L""}));
    Return(app, L"1", L"1");
    EXPECT_EQ(caller->received, (std::vector<sim::Message>{{L"answer", L"q1", L"opened", L"0", L"1"}}));
    EXPECT_EQ(EventText(1), L"activated kind=app-service name=a.service");
    EXPECT_EQ(EventText(0), L"app-service-opened connection=1 name=a.service");
}

TEST_F(BrokersServices, FindOneProcessForTwoCallersAtTheSameInstant)
{
    Register();
    std::shared_ptr<FakePeer> first;
    std::thread other([&] { first = Caller(); });
    auto const second = Caller();
    other.join();
    EXPECT_EQ(m_processes->started.size(), 1u);
    auto const app = Connect(0);
    EXPECT_EQ(app->received.size(), 3u); // the welcome and two activations
    Return(app, L"1", L"1");
    Return(app, L"2", L"2");
    EXPECT_EQ(first->received.size(), 1u);
    EXPECT_EQ(second->received.size(), 1u);
    EXPECT_NE(first->received[0].back(), second->received[0].back());
}

TEST_F(BrokersServices, CarryARequestFromProcessToProcess)
{
    Register();
    auto const caller = Caller();
    auto const app = Connect(0);
    Return(app, L"1", L"1");
    Say(caller, {L"ask", L"q2", L"send", L"1", L"caller", L"a set"});
    EXPECT_EQ(app->received.back(), (Texts{L"request", L"1", L"service", L"1", L"a set"}));
    Say(app, {L"ask", L"a1", L"respond", L"1", L"another"});
    Say(app, {L"tell", L"request-completed", L"1"});
    EXPECT_EQ(app->received.back(), (Texts{L"answer", L"a1", L"responded", L"0"}));
    EXPECT_EQ(caller->received.back(), (Texts{L"answer", L"q2", L"response", L"0", L"another"}));
}

TEST_F(BrokersServices, TellTheCallerOfACrash)
{
    Register();
    auto const caller = Caller();
    auto const app = Connect(0);
    Return(app, L"1", L"1");
    Say(caller, {L"ask", L"q2", L"send", L"1", L"caller", L""});
    m_broker->Closed(app);
    m_processes->End(0, 3);
    EXPECT_EQ(caller->received[1], (Texts{L"answer", L"q2", L"response", L"1", L""}));
    EXPECT_EQ(caller->received[2], (Texts{L"service-closed", L"1", L"caller", L"1"}));
    EXPECT_EQ(EventText(0), L"app-crashed pid=100 code=3");
    EXPECT_EQ(m_processes->started.size(), 1u);
}

TEST_F(BrokersServices, TellTheCallerOfAnAppThatDoesNotComeUp)
{
    Register();
    auto const caller = Caller();
    m_processes->End(0, 3); // it never connected
    EXPECT_EQ(caller->received, (std::vector<sim::Message>{{L"answer", L"q1", L"opened", L"2"}}));
}

TEST_F(BrokersServices, TellTheCallerOfAnAppThatDoesNotStart)
{
    Register();
    m_processes->error = ERROR_BAD_EXE_FORMAT;
    EXPECT_EQ(Caller()->received, (std::vector<sim::Message>{{L"answer", L"q1", L"opened", L"2"}}));
}

TEST_F(BrokersServices, StartANewProcessForACallerThatComesWhileTheAppEnds)
{
    Register();
    Ask({L"launch"});
    auto const first = Connect(0);
    Say(first, {L"taken", L"1"});
    Say(first, {L"exiting"});
    auto const caller = Caller();
    m_broker->Closed(first);
    m_processes->End(0, 0);
    ASSERT_EQ(m_processes->started.size(), 2u);
    auto const second = Connect(1);
    Return(second, L"2", L"1");
    EXPECT_EQ(caller->received.back(), (Texts{L"answer", L"q1", L"opened", L"0", L"1"}));
}

TEST_F(BrokersServices, TellTheAppOfACallerThatDies)
{
    Register();
    auto const caller = Caller();
    auto const app = Connect(0);
    Return(app, L"1", L"1");
    m_broker->Closed(caller);
    auto const size = app->received.size();
    EXPECT_EQ(app->received[size - 2], (Texts{L"service-closed", L"1", L"service", L"1"}));
    EXPECT_EQ(app->received[size - 1], (Texts{L"cancel", L"1", L"1", L"10"}));
}

TEST_F(BrokersServices, KnowTheAppsOwnRequestsFromADesktopPrograms)
{
    Register();
    Ask({L"launch"});
    auto const app = Connect(0);
    auto const program = std::make_shared<FakePeer>();
    Say(program, {L"hello-app", L"7"});
    Say(program, {L"ask", L"1", L"create-channel"});
    EXPECT_EQ(program->received,
              (std::vector<sim::Message>{{L"refused"}, {L"answer", L"1", L"channel", L"0x80070490"}}));
    Say(app, {L"ask", L"1", L"create-channel"});
    EXPECT_EQ(app->received.back()[3], L"0x00000000");
}

TEST_F(BrokersServices, AnswerWhatTheyDoNotKnow)
{
    auto const program = std::make_shared<FakePeer>();
    Say(program, {L"ask", L"1", L"lunch"});
    EXPECT_EQ(program->received.back(), (Texts{L"answer", L"1", L"error", L"the platform knows no request lunch"}));
}

TEST_F(BrokersServices, WakeTheAppWithAPush)
{
    RegisterPushTask();
    EXPECT_EQ(Ask({L"push", L"a payload"}), (Texts{L"ok", L"sent"}));
    ASSERT_EQ(m_processes->started.size(), 2u);
    auto const message = Connect(1)->received.back();
    EXPECT_EQ(message[2], L"background-task");
    EXPECT_EQ(message.back(), L"a payload");
}

TEST_F(BrokersServices, EndAnAppThatHasNothingLeftToDo)
{
    RegisterPushTask();
    NewBroker({.idle = 1});
    Ask({L"push"});
    auto const app = Connect(0);
    Return(app, L"1", L"1");
    Say(app, {L"tell", L"task-completed", L"1"});
    WaitForEvent(L"app-idle");
    m_processes->WaitForKill();
    m_broker->Closed(app);
    m_processes->End(0, 1);
    EXPECT_EQ(LastEvent().kind, L"app-terminated");
}

TEST_F(BrokersServices, GiveToTheNextProcessWhatTheEndedOneDidNotTake)
{
    RegisterPushTask();
    NewBroker({.idle = 1});
    Ask({L"push"});
    auto const app = Connect(0);
    Return(app, L"1", L"1");
    Say(app, {L"tell", L"task-completed", L"1"});
    m_processes->WaitForKill();
    auto const caller = Caller();
    EXPECT_EQ(app->received.back()[1], L"1"); // it gets no more
    m_broker->Closed(app);
    m_processes->End(0, 1);
    ASSERT_EQ(m_processes->started.size(), 2u);
    EXPECT_EQ(Connect(1)->received.back()[2], L"app-service");
}

TEST_F(BrokersServices, LeaveAnAppAloneThatTheUserHasLaunched)
{
    RegisterPushTask();
    Ask({L"launch"});
    auto const app = Connect(1);
    Say(app, {L"taken", L"2"});
    Ask({L"push"});
    Return(app, L"3", L"1");
    Say(app, {L"tell", L"task-completed", L"1"});
    EXPECT_EQ(LastEvent().Text(), L"task-completed instance=1 name='A Task'");
}

TEST_F(BrokersServices, EndAnAppThatDoesNotCompleteItsCancelledTask)
{
    RegisterPushTask();
    NewBroker({.afterCancel = 1});
    Ask({L"push"});
    auto const app = Connect(0);
    Return(app, L"1", L"1");
    EXPECT_EQ(Ask({L"cancel-tasks", L"LoggingOff"})[0], L"ok");
    EXPECT_EQ(app->received.back(), (Texts{L"cancel", L"1", L"", L"2"}));
    m_processes->WaitForKill();
}

TEST_F(BrokersServices, PutTheClockForward)
{
    auto const before = Ask({L"clock"})[1];
    EXPECT_EQ(Ask({L"clock", L"+30d"})[0], L"ok");
    EXPECT_EQ(LastEvent().kind, L"clock-advanced");
    auto const to = LastEvent().Detail(L"to").value_or(L"");
    EXPECT_NE(to.substr(0, 10), before.substr(0, 10)); // another day
    EXPECT_LE(to, Ask({L"clock"})[1]);
    for (auto const* step : {L"24h", L"+h", L"+0h", L"+1w", L"", L"+-1h"})
    {
        EXPECT_EQ(Ask({L"clock", step})[0], L"error") << step;
    }
}

TEST_F(BrokersServices, RunATimerThatHasBecomeDue)
{
    Register();
    Ask({L"launch"});
    auto const app = Connect(0);
    Say(app, {L"taken", L"1"});
    Say(app, {L"ask", L"1", L"register-task", L"Daily", L"timer", L"1440", L"0"});
    Exit(0, app);
    Ask({L"clock", L"+1d"});
    ASSERT_EQ(m_processes->started.size(), 2u);
    EXPECT_EQ(Connect(1)->received.back()[6], L"Daily");
}

TEST_F(BrokersServices, RevokeTheChannel)
{
    RegisterPushTask();
    EXPECT_EQ(Ask({L"revoke-channel"})[0], L"ok");
    EXPECT_EQ(LastEvent().kind, L"channel-revoked");
    EXPECT_EQ(Ask({L"push"}), (Texts{L"ok", L"lost: the app has no open channel"}));
}

TEST_F(BrokersServices, RefuseAPushThatIsTooLongAndAnUnknownReason)
{
    RegisterPushTask();
    EXPECT_EQ(Ask({L"push", std::wstring(5'120, L'x')})[0], L"error");
    EXPECT_EQ(Ask({L"cancel-tasks", L"abort"})[0], L"error");
}

TEST_F(BrokersServices, ForgetTheTasksOfARemovedPackage)
{
    RegisterPushTask();
    EXPECT_NE(Ask({L"tasks"})[1].find(L"A Task"), std::wstring::npos);
    Ask({L"unregister"});
    Register();
    EXPECT_EQ(Ask({L"tasks"}), (Texts{L"ok", L"registered:\nrunning:"}));
}
