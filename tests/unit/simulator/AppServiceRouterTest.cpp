#include "tests/unit/simulator/ServicesFixture.h"

namespace
{

using Texts = std::vector<std::wstring>;

class Connections : public ServicesFixture
{
};

} // namespace

TEST_F(Connections, OpenWhenTheAppHasTheConnection)
{
    auto const opened = AskLater(m_caller, {L"open-app-service", service, family});
    ASSERT_EQ(m_activations.size(), 1u);
    EXPECT_EQ(m_activations[0].kind, sim::ActivationKind::AppService);
    EXPECT_EQ(m_activations[0].more, (Texts{L"1", L"1", service, L""}));
    Take(0);
    EXPECT_TRUE(opened->empty());
    Tell(m_app, {L"task-returned", L"1"});
    EXPECT_EQ(*opened, (Texts{L"opened", L"0", L"1"}));
    EXPECT_EQ(Reports(),
              (Texts{L"task-started instance=1 name=a.service", L"app-service-opened connection=1 name=a.service"}));
}

TEST_F(Connections, TellThePackagedCallersFamily)
{
    AskLater(m_app, {L"open-app-service", service, family});
    EXPECT_EQ(m_activations[0].more[3], family);
}

TEST_F(Connections, AreNotThereWithoutThePackage)
{
    EXPECT_EQ(Ask(m_caller, {L"open-app-service", service, L"Another_m7dy57p66fpam"}), (Texts{L"opened", L"1"}));
    m_family.clear();
    EXPECT_EQ(Ask(m_caller, {L"open-app-service", service, L""}), (Texts{L"opened", L"1"}));
    EXPECT_TRUE(m_activations.empty());
}

TEST_F(Connections, AreNotThereUnlessDeclared)
{
    EXPECT_EQ(Ask(m_caller, {L"open-app-service", L"A.Service", family}), (Texts{L"opened", L"3"}));
    EXPECT_TRUE(m_activations.empty());
}

TEST_F(Connections, AreUnavailableWhenTheAppDoesNotStart)
{
    m_appStarts = false;
    EXPECT_EQ(Ask(m_caller, {L"open-app-service", service, family}), (Texts{L"opened", L"2"}));
}

TEST_F(Connections, AreUnavailableWhenTheAppEndsBeforeItHasTheConnection)
{
    auto const opened = AskLater(m_caller, {L"open-app-service", service, family});
    Take(0);
    Gone(*m_app);
    EXPECT_EQ(*opened, (Texts{L"opened", L"2"}));
}

TEST_F(Connections, WaitForTheAppsNextProcessIfThisOneHasNotTakenTheConnection)
{
    auto const opened = AskLater(m_caller, {L"open-app-service", service, family});
    Gone(*m_app);
    EXPECT_TRUE(opened->empty());
    m_app = std::make_shared<FakePeer>();
    Return(0);
    EXPECT_EQ((*opened)[1], L"0");
}

TEST_F(Connections, CarryRequestsOfTheCaller)
{
    auto const connection = Open(m_caller);
    auto const response = AskLater(m_caller, {L"send", connection, L"caller", L"a set"});
    EXPECT_EQ(m_app->received, (std::vector<sim::Message>{{L"request", connection, L"service", L"1", L"a set"}}));
    EXPECT_EQ(Ask(m_app, {L"respond", L"1", L"another set"}), (Texts{L"responded", L"0"}));
    EXPECT_TRUE(response->empty()); // the response alone does not end the request
    Tell(m_app, {L"request-completed", L"1"});
    EXPECT_EQ(*response, (Texts{L"response", L"0", L"another set"}));
}

TEST_F(Connections, CarryRequestsOfTheService)
{
    auto const connection = Open(m_caller);
    auto const response = AskLater(m_app, {L"send", connection, L"service", L"a set"});
    EXPECT_EQ(m_caller->received, (std::vector<sim::Message>{{L"request", connection, L"caller", L"1", L"a set"}}));
    Tell(m_caller, {L"request-completed", L"1"});
    EXPECT_EQ(*response, (Texts{L"response", L"0", L""})); // a response is optional
}

TEST_F(Connections, KeepWhatTheServiceSaysUntilTheCallerHasTheConnection)
{
    auto const opened = AskLater(m_caller, {L"open-app-service", service, family});
    Take(0);
    auto const response = AskLater(m_app, {L"send", L"1", L"service", L"early"});
    EXPECT_TRUE(m_caller->received.empty());
    Tell(m_app, {L"task-returned", L"1"});
    EXPECT_EQ(m_caller->received, (std::vector<sim::Message>{{L"request", L"1", L"caller", L"1", L"early"}}));
    Tell(m_caller, {L"request-completed", L"1"});
    EXPECT_EQ((*response)[1], L"0");
}

TEST_F(Connections, TakeOneResponseForARequest)
{
    auto const connection = Open(m_caller);
    auto const response = AskLater(m_caller, {L"send", connection, L"caller", L""});
    EXPECT_EQ(Ask(m_app, {L"respond", L"1", L"first"}), (Texts{L"responded", L"0"}));
    EXPECT_EQ(Ask(m_app, {L"respond", L"1", L"second"}), (Texts{L"responded", L"1"}));
    Tell(m_app, {L"request-completed", L"1"});
    EXPECT_EQ(response->back(), L"first");
    EXPECT_EQ(Ask(m_app, {L"respond", L"1", L"late"}), (Texts{L"responded", L"1"}));
}

TEST_F(Connections, EndARequestOnce)
{
    auto const connection = Open(m_caller);
    auto const response = AskLater(m_caller, {L"send", connection, L"caller", L""});
    Tell(m_app, {L"request-completed", L"1"});
    response->clear();
    Tell(m_app, {L"request-completed", L"1"});
    EXPECT_TRUE(response->empty());
}

TEST_F(Connections, LetARequestPendUntilTheAppEnds)
{
    auto const connection = Open(m_caller);
    auto const response = AskLater(m_caller, {L"send", connection, L"caller", L""});
    EXPECT_EQ(Ask(m_app, {L"respond", L"1", L"never completed"})[1], L"0");
    Reports();
    Gone(*m_app);
    EXPECT_EQ(*response, (Texts{L"response", L"1", L""}));
    EXPECT_EQ(m_caller->received.back(), (Texts{L"service-closed", connection, L"caller", L"1"}));
    EXPECT_EQ(Reports(), (Texts{L"task-lost instance=1 name=a.service",
                                L"app-service-closed connection=1 by=service status=Canceled"}));
    EXPECT_EQ(Ask(m_caller, {L"send", connection, L"caller", L""})[1], L"1");
}

TEST_F(Connections, TellTheServiceThatItsCallerCloses)
{
    auto const connection = Open(m_caller);
    auto const response = AskLater(m_app, {L"send", connection, L"service", L""});
    Reports();
    Tell(m_caller, {L"close", connection, L"caller"});
    EXPECT_EQ(*response, (Texts{L"response", L"1", L""}));
    EXPECT_EQ(m_app->received, (std::vector<sim::Message>{{L"service-closed", connection, L"service", L"0"},
                                                          {L"cancel", L"1", connection, L"10"}}));
    EXPECT_EQ(Reports(), (Texts{L"app-service-closed connection=1 by=caller status=Completed",
                                L"task-cancelled instance=1 name=a.service reason=ResourceRevocation"}));
    EXPECT_EQ(Ask(m_app, {L"send", connection, L"service", L""})[1], L"1");
}

TEST_F(Connections, TellTheServiceThatItsCallerHasGone)
{
    auto const connection = Open(m_caller);
    Gone(*m_caller);
    EXPECT_EQ(m_app->received, (std::vector<sim::Message>{{L"service-closed", connection, L"service", L"1"},
                                                          {L"cancel", L"1", connection, L"10"}}));
}

TEST_F(Connections, TellTheServiceOnceItIsThereThatItsCallerHadGone)
{
    AskLater(m_caller, {L"open-app-service", service, family});
    Gone(*m_caller);
    Take(0);
    EXPECT_TRUE(m_app->received.empty());
    EXPECT_EQ(Ask(m_app, {L"send", L"1", L"service", L""})[1], L"1");
    Tell(m_app, {L"task-returned", L"1"});
    EXPECT_EQ(m_app->received,
              (std::vector<sim::Message>{{L"service-closed", L"1", L"service", L"1"}, {L"cancel", L"1", L"1", L"10"}}));
}

TEST_F(Connections, CloseFromTheServicesEnd)
{
    auto const connection = Open(m_caller);
    auto const response = AskLater(m_caller, {L"send", connection, L"caller", L""});
    Tell(m_app, {L"close", connection, L"service"});
    EXPECT_EQ(*response, (Texts{L"response", L"1", L""}));
    EXPECT_EQ(m_caller->received, (std::vector<sim::Message>{{L"service-closed", connection, L"caller", L"0"}}));
    m_caller->received.clear();
    Complete(0);
    EXPECT_TRUE(m_caller->received.empty());
}

TEST_F(Connections, CloseWithTheirTask)
{
    auto const connection = Open(m_caller);
    auto const response = AskLater(m_caller, {L"send", connection, L"caller", L""});
    Complete(0);
    EXPECT_EQ(*response, (Texts{L"response", L"1", L""}));
    EXPECT_EQ(m_caller->received, (std::vector<sim::Message>{{L"service-closed", connection, L"caller", L"0"}}));
}

TEST_F(Connections, CloseAsCanceledWithTheirCancelledTask)
{
    auto const connection = Open(m_caller);
    Do([](sim::Services& services) { services.CancelTasks(0); });
    EXPECT_TRUE(m_caller->received.empty());
    Complete(0);
    EXPECT_EQ(m_caller->received, (std::vector<sim::Message>{{L"service-closed", connection, L"caller", L"1"}}));
}

TEST_F(Connections, KeepConnectionsApart)
{
    auto const other = std::make_shared<FakePeer>();
    auto const first = Open(m_caller);
    auto const second = Open(other);
    ASSERT_EQ(m_activations.size(), 2u);
    auto const response = AskLater(other, {L"send", second, L"caller", L""});
    Tell(m_caller, {L"close", first, L"caller"});
    Complete(0);
    EXPECT_TRUE(response->empty());
    EXPECT_TRUE(other->received.empty());
    Tell(m_app, {L"request-completed", L"1"});
    EXPECT_EQ((*response)[1], L"0");
}

TEST_F(Connections, DoNotLetOthersSpeakOnAConnection)
{
    auto const connection = Open(m_caller);
    auto const stranger = std::make_shared<FakePeer>();
    EXPECT_EQ(Ask(stranger, {L"send", connection, L"caller", L""})[1], L"1");
    EXPECT_EQ(Ask(stranger, {L"send", connection, L"service", L""})[1], L"1");
    EXPECT_EQ(Ask(m_caller, {L"send", L"7", L"caller", L""})[1], L"1");
    EXPECT_TRUE(m_app->received.empty());
}
