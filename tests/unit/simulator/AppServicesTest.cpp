#include "tests/unit/simulator/ServicesFixture.h"

#include <windows.h>

namespace
{

using sim::ClosedStatus;
using sim::ConnectionEnd;
using sim::OpenStatus;
using sim::ResponseStatus;

constexpr std::uint32_t aborted = 0;
constexpr std::uint32_t resourceRevocation = 10;

class AppServicesTest : public ServicesFixture
{
  protected:
    sim::ConnectionOpened Opened(std::wstring const& name, std::wstring const& familyName)
    {
        return Ask(m_caller, sim::OpenConnection{name, familyName});
    }

    Asked<sim::SendRequest> SendLater(PeerPointer const& from, std::uint32_t connection, ConnectionEnd end,
                                      std::string const& set = "")
    {
        return AskLater(from, sim::SendRequest{connection, end, set});
    }

    ResponseStatus Send(PeerPointer const& from, std::uint32_t connection, ConnectionEnd end)
    {
        return Ask(from, sim::SendRequest{connection, end, ""}).status;
    }

    ResponseStatus Respond(PeerPointer const& from, std::uint32_t request, std::string const& set)
    {
        return Ask(from, sim::GiveResponse{request, set}).status;
    }

    static sim::ResponseGiven Given(std::string const& set) { return {ResponseStatus::Success, set}; }

    sim::ResponseGiven const m_failure{ResponseStatus::Failure, ""};
};

} // namespace

TEST_F(AppServicesTest, OpensAConnectionWhenTheAppHasIt)
{
    auto const opened = AskLater(m_caller, OpenService());
    ASSERT_EQ(m_activations.size(), 1u);
    EXPECT_EQ(ServiceAt(0), (sim::ServiceStart{1, 1, service, L""}));
    Take(0);
    EXPECT_FALSE(opened.Take());
    Reports();
    Say(m_app, sim::TaskReturned{1});
    EXPECT_EQ(opened.Take(), (sim::ConnectionOpened{OpenStatus::Success, 1}));
    EXPECT_EQ(Reports(), Texts{L"app-service-opened connection=1 name=a.service"});
}

TEST_F(AppServicesTest, NotesTheTasksStart)
{
    AskLater(m_caller, OpenService());
    EXPECT_EQ(Reports(), Texts{L"task-started instance=1 name=a.service"});
}

TEST_F(AppServicesTest, TellsThePackagedCallersFamily)
{
    AskLater(m_app, OpenService());
    EXPECT_EQ(ServiceAt(0).callerFamily, family);
}

TEST_F(AppServicesTest, KnowsNoOtherPackage)
{
    sim::ConnectionOpened const notInstalled{OpenStatus::AppNotInstalled};
    EXPECT_EQ(Opened(service, L"Another_m7dy57p66fpam"), notInstalled);
    EXPECT_EQ(Opened(service, L""), notInstalled);
    ExitApp();
    Ask(sim::UnregisterPackage{});
    EXPECT_EQ(Opened(service, L""), notInstalled);
    EXPECT_EQ(Opened(service, family), notInstalled);
    EXPECT_TRUE(m_activations.empty());
}

TEST_F(AppServicesTest, KnowsThePackageInAnyCase)
{
    AskLater(m_caller, sim::OpenConnection{service, L"a.package_M7DY57P66FPAM"});
    EXPECT_EQ(m_activations.size(), 1u);
}

TEST_F(AppServicesTest, KnowsNoServiceThatIsNotDeclared)
{
    EXPECT_EQ(Opened(L"A.Service", family), sim::ConnectionOpened{OpenStatus::AppServiceUnavailable});
    EXPECT_TRUE(m_activations.empty());
}

TEST_F(AppServicesTest, IsUnavailableWhenTheAppDoesNotStart)
{
    ExitApp();
    m_processes->error = ERROR_BAD_EXE_FORMAT;
    Reports();
    EXPECT_EQ(Opened(service, family), sim::ConnectionOpened{OpenStatus::AppUnavailable});
    EXPECT_EQ(Reports(),
              (Texts{L"task-started instance=1 name=a.service", L"app-start-failed error=193",
                     L"activation-lost kind=app-service name=a.service", L"task-lost instance=1 name=a.service",
                     L"app-service-closed connection=1 by=service status=Canceled"}));
    EXPECT_TRUE(m_caller->received.empty());
}

TEST_F(AppServicesTest, IsUnavailableWhenTheAppEndsBeforeItHasTheConnection)
{
    auto const opened = AskLater(m_caller, OpenService());
    Take(0);
    Close(m_app);
    EXPECT_EQ(opened.Take(), sim::ConnectionOpened{OpenStatus::AppUnavailable});
}

TEST_F(AppServicesTest, WaitsForTheAppsNextProcessIfThisOneHasNotTakenTheConnection)
{
    auto const opened = AskLater(m_caller, OpenService());
    KillApp();
    EXPECT_FALSE(opened.Take());
    ConnectNextApp();
    ASSERT_EQ(m_activations.size(), 2u);
    EXPECT_EQ(m_activations[1], m_activations[0]);
    Return(1);
    EXPECT_EQ(opened.Take(), (sim::ConnectionOpened{OpenStatus::Success, 1}));
}

TEST_F(AppServicesTest, CarriesRequestsOfTheCaller)
{
    auto const connection = Open(m_caller);
    auto const response = SendLater(m_caller, connection, ConnectionEnd::Caller, "a set");
    EXPECT_EQ(m_app->received, Sent(sim::RequestArrived{connection, ConnectionEnd::Service, 1, "a set"}));
    EXPECT_EQ(Respond(m_app, 1, "another set"), ResponseStatus::Success);
    EXPECT_FALSE(response.Take()); // the response alone does not end the request
    Say(m_app, sim::RequestCompleted{1});
    EXPECT_EQ(response.Take(), Given("another set"));
}

TEST_F(AppServicesTest, CarriesRequestsOfTheService)
{
    auto const connection = Open(m_caller);
    auto const response = SendLater(m_app, connection, ConnectionEnd::Service, "a set");
    EXPECT_EQ(m_caller->received, Sent(sim::RequestArrived{connection, ConnectionEnd::Caller, 1, "a set"}));
    Say(m_caller, sim::RequestCompleted{1});
    EXPECT_EQ(response.Take(), Given("")); // a response is optional
}

TEST_F(AppServicesTest, KeepsWhatTheServiceSaysUntilTheCallerHasTheConnection)
{
    auto const opened = AskLater(m_caller, OpenService());
    Take(0);
    auto const response = SendLater(m_app, 1, ConnectionEnd::Service, "early");
    EXPECT_TRUE(m_caller->received.empty());
    Say(m_app, sim::TaskReturned{1});
    ASSERT_EQ(m_caller->received.size(), 2u);
    EXPECT_EQ(m_caller->received[1], sim::ToProcess(sim::RequestArrived{1, ConnectionEnd::Caller, 1, "early"}));
    EXPECT_EQ(opened.Take(), (sim::ConnectionOpened{OpenStatus::Success, 1})); // came before it
    Say(m_caller, sim::RequestCompleted{1});
    EXPECT_EQ(response.Take(), Given(""));
}

TEST_F(AppServicesTest, TakesOneResponseForARequest)
{
    auto const connection = Open(m_caller);
    auto const response = SendLater(m_caller, connection, ConnectionEnd::Caller);
    EXPECT_EQ(Respond(m_app, 1, "first"), ResponseStatus::Success);
    EXPECT_EQ(Respond(m_app, 1, "second"), ResponseStatus::Failure);
    Say(m_app, sim::RequestCompleted{1});
    EXPECT_EQ(response.Take(), Given("first"));
    EXPECT_EQ(Respond(m_app, 1, "late"), ResponseStatus::Failure);
}

TEST_F(AppServicesTest, EndsARequestOnce)
{
    auto const connection = Open(m_caller);
    auto const response = SendLater(m_caller, connection, ConnectionEnd::Caller);
    Say(m_app, sim::RequestCompleted{1});
    EXPECT_TRUE(response.Take());
    Say(m_app, sim::RequestCompleted{1});
    Say(m_app, sim::RequestRefused{1});
    EXPECT_TRUE(m_caller->received.empty());
}

TEST_F(AppServicesTest, FailsARequestThatNobodyListensFor)
{
    auto const connection = Open(m_caller);
    auto const response = SendLater(m_caller, connection, ConnectionEnd::Caller);
    Say(m_app, sim::RequestRefused{1});
    EXPECT_EQ(response.Take(), m_failure);
}

TEST_F(AppServicesTest, LetsARequestPendUntilTheAppEnds)
{
    auto const connection = Open(m_caller);
    auto const response = SendLater(m_caller, connection, ConnectionEnd::Caller);
    EXPECT_EQ(Respond(m_app, 1, "never completed"), ResponseStatus::Success);
    Reports();
    Close(m_app);
    EXPECT_EQ(response.Take(), m_failure);
    EXPECT_EQ(m_caller->received, Sent(sim::OtherEndClosed{connection, ConnectionEnd::Caller, ClosedStatus::Canceled}));
    EXPECT_EQ(Reports(), (Texts{L"task-lost instance=1 name=a.service",
                                L"app-service-closed connection=1 by=service status=Canceled"}));
    EXPECT_EQ(Send(m_caller, connection, ConnectionEnd::Caller), ResponseStatus::Failure);
}

TEST_F(AppServicesTest, TellsTheServiceThatItsCallerCloses)
{
    auto const connection = Open(m_caller);
    auto const response = SendLater(m_app, connection, ConnectionEnd::Service);
    Reports();
    Say(m_caller, sim::ConnectionClosed{connection, ConnectionEnd::Caller});
    EXPECT_EQ(response.Take(), m_failure);
    EXPECT_EQ(m_app->received, Sent(sim::OtherEndClosed{connection, ConnectionEnd::Service, ClosedStatus::Completed},
                                    sim::TaskCancelled{1, connection, resourceRevocation}));
    EXPECT_EQ(Reports(), (Texts{L"app-service-closed connection=1 by=caller status=Completed",
                                L"task-cancelled instance=1 name=a.service reason=ResourceRevocation"}));
    EXPECT_EQ(Send(m_app, connection, ConnectionEnd::Service), ResponseStatus::Failure);
}

TEST_F(AppServicesTest, TellsTheServiceThatItsCallerHasEnded)
{
    auto const connection = Open(m_caller);
    Close(m_caller);
    EXPECT_EQ(m_app->received, Sent(sim::OtherEndClosed{connection, ConnectionEnd::Service, ClosedStatus::Canceled},
                                    sim::TaskCancelled{1, connection, resourceRevocation}));
}

TEST_F(AppServicesTest, TellsTheServiceOnceItIsThereThatItsCallerHadEnded)
{
    AskLater(m_caller, OpenService());
    Close(m_caller);
    Take(0);
    EXPECT_TRUE(m_app->received.empty());
    EXPECT_EQ(Send(m_app, 1, ConnectionEnd::Service), ResponseStatus::Failure);
    Say(m_app, sim::TaskReturned{1});
    EXPECT_EQ(m_app->received, Sent(sim::OtherEndClosed{1, ConnectionEnd::Service, ClosedStatus::Canceled},
                                    sim::TaskCancelled{1, 1, resourceRevocation}));
}

TEST_F(AppServicesTest, ClosesFromTheServicesEnd)
{
    auto const connection = Open(m_caller);
    auto const response = SendLater(m_caller, connection, ConnectionEnd::Caller);
    Say(m_app, sim::ConnectionClosed{connection, ConnectionEnd::Service});
    EXPECT_EQ(response.Take(), m_failure);
    EXPECT_EQ(m_caller->received,
              Sent(sim::OtherEndClosed{connection, ConnectionEnd::Caller, ClosedStatus::Completed}));
    m_caller->received.clear();
    Complete(0);
    EXPECT_TRUE(m_caller->received.empty());
}

TEST_F(AppServicesTest, IsUnavailableWhenTheServiceClosesBeforeItHasReturned)
{
    auto const opened = AskLater(m_caller, OpenService());
    Take(0);
    Say(m_app, sim::ConnectionClosed{1, ConnectionEnd::Service});
    EXPECT_EQ(opened.Take(), sim::ConnectionOpened{OpenStatus::AppUnavailable});
    Say(m_app, sim::TaskReturned{1});
    EXPECT_TRUE(m_caller->received.empty());
}

TEST_F(AppServicesTest, ClosesWithItsTask)
{
    auto const connection = Open(m_caller);
    auto const response = SendLater(m_caller, connection, ConnectionEnd::Caller);
    m_app->received.clear();
    Complete(0);
    EXPECT_EQ(response.Take(), m_failure);
    EXPECT_EQ(m_caller->received,
              Sent(sim::OtherEndClosed{connection, ConnectionEnd::Caller, ClosedStatus::Completed}));
    EXPECT_EQ(m_app->received, Sent(sim::TaskEnded{1, connection}));
}

TEST_F(AppServicesTest, ClosesAsCanceledWithItsCancelledTask)
{
    auto const connection = Open(m_caller);
    Ask(sim::CancelTasks{aborted});
    EXPECT_TRUE(m_caller->received.empty());
    Complete(0);
    EXPECT_EQ(m_caller->received, Sent(sim::OtherEndClosed{connection, ConnectionEnd::Caller, ClosedStatus::Canceled}));
}

TEST_F(AppServicesTest, KeepsConnectionsApart)
{
    auto const other = std::make_shared<FakePeer>();
    auto const first = Open(m_caller);
    auto const second = Open(other);
    ASSERT_EQ(m_activations.size(), 2u);
    auto const response = SendLater(other, second, ConnectionEnd::Caller);
    Say(m_caller, sim::ConnectionClosed{first, ConnectionEnd::Caller});
    Complete(0);
    EXPECT_TRUE(other->received.empty());
    Say(m_app, sim::RequestCompleted{1});
    EXPECT_EQ(response.Take(), Given(""));
}

TEST_F(AppServicesTest, DoesNotLetOthersSpeakOnAConnection)
{
    auto const connection = Open(m_caller);
    auto const stranger = std::make_shared<FakePeer>();
    EXPECT_EQ(Send(stranger, connection, ConnectionEnd::Caller), ResponseStatus::Failure);
    EXPECT_EQ(Send(stranger, connection, ConnectionEnd::Service), ResponseStatus::Failure);
    EXPECT_EQ(Send(m_caller, 7, ConnectionEnd::Caller), ResponseStatus::Failure);
    EXPECT_TRUE(m_app->received.empty());
}

TEST_F(AppServicesTest, TakesTheEndOfARequestFromItsReceiverAlone)
{
    auto const connection = Open(m_caller);
    auto const stranger = std::make_shared<FakePeer>();
    auto const sent = AskLater(m_caller, sim::SendRequest{connection, ConnectionEnd::Caller, "request"});
    Reports();
    for (auto const& from : {m_caller, stranger})
    {
        EXPECT_EQ(Respond(from, 1, "forged"), ResponseStatus::Failure);
        Say(from, sim::RequestCompleted{1});
        Say(from, sim::RequestRefused{1});
        EXPECT_EQ(Reports(), (Texts{L"message-refused message=GiveResponse request=1",
                                    L"message-refused message=RequestCompleted request=1",
                                    L"message-refused message=RequestRefused request=1"}));
    }
    EXPECT_FALSE(sent.Take());
    EXPECT_EQ(Respond(m_app, 1, "response"), ResponseStatus::Success);
    Say(m_app, sim::RequestCompleted{1});
    EXPECT_EQ(sent.Take(), Given("response"));
    EXPECT_EQ(Reports(), Texts{});
}

TEST_F(AppServicesTest, TakesTheEndOfTheServicesRequestFromTheCallerAlone)
{
    auto const connection = Open(m_caller);
    auto const sent = AskLater(m_app, sim::SendRequest{connection, ConnectionEnd::Service, "request"});
    Reports();
    Say(m_app, sim::RequestCompleted{1});
    EXPECT_EQ(Reports(), Texts{L"message-refused message=RequestCompleted request=1"});
    EXPECT_FALSE(sent.Take());
    Say(m_caller, sim::RequestCompleted{1});
    EXPECT_EQ(sent.Take(), Given(""));
}

TEST_F(AppServicesTest, AreClosedByTheirOwnEndsAlone)
{
    auto const connection = Open(m_caller);
    auto const stranger = std::make_shared<FakePeer>();
    Reports();
    for (auto const& from : {m_app, stranger})
    {
        Say(from, sim::ConnectionClosed{connection, ConnectionEnd::Caller});
    }
    Say(m_caller, sim::ConnectionClosed{connection, ConnectionEnd::Service});
    EXPECT_EQ(Reports(), Texts(3, L"message-refused message=ConnectionClosed connection=1"));
    Say(m_app, sim::ConnectionClosed{connection, ConnectionEnd::Service});
    EXPECT_EQ(Reports(), Texts{L"app-service-closed connection=1 by=service status=Completed"});
}

TEST_F(AppServicesTest, AreClosedByTheirServiceAloneBeforeItHasReturned)
{
    AskLater(m_caller, OpenService());
    Take(0);
    Reports();
    Say(m_caller, sim::ConnectionClosed{1, ConnectionEnd::Service});
    EXPECT_EQ(Reports(), Texts{L"message-refused message=ConnectionClosed connection=1"});
    Say(m_app, sim::ConnectionClosed{1, ConnectionEnd::Service});
    EXPECT_EQ(Reports(), Texts{L"app-service-closed connection=1 by=service status=Completed"});
}

TEST_F(AppServicesTest, AreClosedOnceByACallerThatDoesNotWait)
{
    AskLater(m_caller, OpenService());
    Say(m_caller, sim::ConnectionClosed{1, ConnectionEnd::Caller});
    Reports();
    Say(m_caller, sim::ConnectionClosed{1, ConnectionEnd::Caller});
    EXPECT_EQ(Reports(), Texts{});
}
