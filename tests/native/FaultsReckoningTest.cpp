#include "explore/faults/model/Reckoning.h"

#include "tests/native/FaultsFlows.h"

#include <algorithm>
#include <gtest/gtest.h>

using namespace explore::faults;

namespace
{

constexpr auto completeRequest = L"AppServiceDeferral.Complete";
constexpr auto sendMessage = L"AppServiceConnection.SendMessageAsync";

Way Now(std::int32_t code = Results::failed)
{
    return {Way::Kind::Now, code};
}

bool HasLine(Outcome const& outcome, std::wstring_view line)
{
    return std::ranges::find(outcome.lines, line) != outcome.lines.end();
}

Outcome Disturbed(Flow const& flow, std::wstring_view call, Way way, std::size_t n = 1)
{
    return test::Reckoned(flow, {{test::NumberOf(flow, call, n), way}});
}

Flow const unregister = test::RequestFlow(L"UnregisterBackgroundTask");

} // namespace

TEST(FaultsReckoningTest, TellsWhatAnUndisturbedRequestLeadsTo)
{
    auto const outcome = test::Reckoned(unregister);
    EXPECT_EQ(outcome.messages, Texts{L"1: NewMessage=UnregisterBackgroundTaskDone"});
    EXPECT_EQ(outcome.completions, std::vector<unsigned>{1});
    EXPECT_EQ(outcome.tasks, Texts{L"Other"});
    EXPECT_EQ(outcome.uri, L"{old}");
    EXPECT_EQ(outcome.end, End::Alive);
    EXPECT_TRUE(outcome.answers.at(0).isGiven);
    EXPECT_EQ(outcome.lines.size(), 8U);
    EXPECT_EQ(outcome.lines.back(), L"[INFO] AppService UnRegisterBkgServices deferral complete");
}

TEST(FaultsReckoningTest, TakesAClassOnceForEachOfItsInterfaces)
{
    auto const outcome = test::Reckoned(test::RequestFlow(L"GetChannelUri"));
    EXPECT_EQ(std::ranges::count(outcome.calls, L"ApplicationData"), 1);
    EXPECT_EQ(std::ranges::count(outcome.calls, L"ApplicationData.Current"), 2);
}

TEST(FaultsReckoningTest, LeavesARequestOpenWhoseHandlerFails)
{
    auto const outcome = Disturbed(unregister, L"BackgroundTaskRegistration.Unregister", Now());
    EXPECT_FALSE(outcome.answers.at(0).isGiven);
    EXPECT_EQ(outcome.completions, std::vector<unsigned>{0});
    EXPECT_EQ(outcome.tasks.size(), 3U);
}

TEST(FaultsReckoningTest, GuardsASend)
{
    auto const outcome = Disturbed(unregister, sendMessage, Now());
    EXPECT_EQ(outcome.messages, Texts());
    EXPECT_TRUE(outcome.answers.at(0).isGiven);
    EXPECT_TRUE(HasLine(outcome, L"[ERROR] AppService Error in sending response for appservice requset after sucessful "
                                 L"bkg task unregistration"));
}

TEST(FaultsReckoningTest, EndsTheProcessWithTheCodeOfAContinuation)
{
    auto const outcome = Disturbed(unregister, completeRequest, Now(Results::outOfMemory));
    EXPECT_EQ(outcome.end, End::Terminated);
    EXPECT_EQ(outcome.code, Results::outOfMemory);
    EXPECT_EQ(outcome.calls.back(), completeRequest);
}

TEST(FaultsReckoningTest, EndsTheAppWithTheCodeOfAnOverride)
{
    auto const outcome = Disturbed(test::LaunchFlow(), L"CoreApplication.Exit", Now());
    EXPECT_EQ(outcome.end, End::Failed);
    EXPECT_EQ(outcome.code, Results::failed);
    EXPECT_EQ(outcome.launches, Texts{L"LaunchHOV"});
    EXPECT_EQ(Disturbed(test::StartUpFlow(), L"Application.Suspending", Now()).end, End::NotStarted);
}

TEST(FaultsReckoningTest, SendsTwiceWhenTheUriCannotBeWritten)
{
    auto const outcome =
        Disturbed(test::RequestFlow(L"GetChannelUri"), L"ApplicationDataContainerSettings.Insert", Now());
    EXPECT_EQ(outcome.messages, (Texts{L"1: NewMessage=UpdatedChannelURIAvailable",
                                       L"1: NewMessage=UpdatedChannelURIAvailable NewCuri={old}"}));
    EXPECT_EQ(outcome.completions, std::vector<unsigned>{3});
}

TEST(FaultsReckoningTest, ReportsARegistrationThatIsNeverSignalled)
{
    auto const outcome =
        Disturbed(test::RequestFlow(L"RegisterBackgroundTask"), L"BackgroundTaskBuilder.Register", Now());
    EXPECT_EQ(outcome.messages, Texts{L"1: NewMessage=BackgroundtaskRegistrationFailed"});
    EXPECT_EQ(outcome.waits, Texts{L"60000"});
    EXPECT_EQ(outcome.tasks, Texts{L"Other"});
}

TEST(FaultsReckoningTest, PutsAsideWhatAnEndOutOfTurnLeadsTo)
{
    std::vector<WayAt> const deviations = {{test::NumberOf(unregister, sendMessage), {Way::Kind::Ended}}};
    Reckoning reckoning(unregister.scene, deviations);
    reckoning.Run(unregister.rules, unregister.role);
    ASSERT_EQ(reckoning.Asides().size(), 1U);
    EXPECT_EQ(reckoning.Asides()[0].calls, Texts{completeRequest});
    EXPECT_EQ(reckoning.Asides()[0].lines.size(), 2U);
}

TEST(FaultsReckoningTest, NotesWhereAConnectionIsLost)
{
    Reckoning reckoning(unregister.scene, {{5, {Way::Kind::HelperCloses}}});
    reckoning.Run(unregister.rules, unregister.role);
    ASSERT_TRUE(reckoning.Lost());
    EXPECT_EQ(reckoning.Lost()->lines, 2U);
    EXPECT_EQ(reckoning.Lost()->calls, 6U);
    EXPECT_EQ(reckoning.Lost()->handlers.size(), 2U);
    auto const& outcome = reckoning.Result();
    EXPECT_TRUE(outcome.answers.at(0).isGiven);
    EXPECT_EQ(outcome.tasksEnded, 1U);
    EXPECT_EQ(outcome.messages, Texts());
}

TEST(FaultsReckoningTest, EndsATriggerTaskThatIsCancelledAsUsual)
{
    auto const flow = test::PushFlow();
    EXPECT_EQ(test::Reckoned(flow, {{5, {Way::Kind::TaskCancelled}}}), test::Reckoned(flow));
    EXPECT_EQ(test::Reckoned(flow).tasksEnded, 1U);
}

TEST(FaultsReckoningTest, AnswersTheSecondRequestWhileTheFirstOneWaits)
{
    auto const outcome = test::Reckoned(test::TwoRequestsFlow(L"RegisterBackgroundTask", L"GetChannelUri"));
    EXPECT_EQ(outcome.messages, (Texts{L"1: NewMessage=UpdatedChannelURIAvailable NewCuri={uri}",
                                       L"1: NewMessage=RegisterBkgTaskDone NewCuri={uri}"}));
    EXPECT_EQ(outcome.completions, (std::vector<unsigned>{1, 2}));
    EXPECT_EQ(outcome.answers, (std::vector<Answer>{{true}, {true}}));
}

TEST(FaultsReckoningTest, LeavesTheFirstRequestOpenAlone)
{
    auto const flow = test::TwoRequestsFlow(L"UnregisterBackgroundTask", L"GetChannelUri");
    auto const outcome = Disturbed(flow, L"BackgroundTaskRegistration.Unregister", Now());
    EXPECT_EQ(outcome.answers, (std::vector<Answer>{{false}, {true}}));
    EXPECT_EQ(outcome.completions, (std::vector<unsigned>{0, 2}));
}

// As the platform takes it for one of a process that is gone.
TEST(FaultsReckoningTest, CallsNoHandlerAgainThatEndsAsDisconnected)
{
    auto const flow = test::TwoRequestsFlow(L"UnregisterBackgroundTask", L"GetChannelUri");
    auto const outcome = Disturbed(flow, L"BackgroundTaskRegistration.Unregister", Now(Results::disconnected));
    EXPECT_EQ(outcome.answers, (std::vector<Answer>{{false}, {false}}));
    EXPECT_EQ(outcome.completions, std::vector<unsigned>{0});
}

TEST(FaultsReckoningTest, GivesAResponseWithTheEndOfTheRequest)
{
    auto const flow = test::RequestFlow(L"ExitZEB");
    EXPECT_EQ(test::Reckoned(flow).answers, (std::vector<Answer>{{true, L"MessageAck=Ack"}}));
    auto const response = test::NumberOf(flow, L"AppServiceRequest.SendResponseAsync");
    std::vector<WayAt> const deviations = {{response, {Way::Kind::Unheard, Results::failed}}, {response + 1, Now()}};
    EXPECT_EQ(test::Reckoned(flow, deviations).answers, std::vector<Answer>{{false}});
}

// The handlers of the first loss meet the second one, the answer of a message among them.
TEST(FaultsReckoningTest, LosesAConnectionOnce)
{
    for (std::size_t helpers = 1; helpers <= 2; ++helpers)
    {
        auto flow = test::RequestFlow(L"GetChannelUri");
        flow.scene.helpers = helpers;
        auto const first = test::NumberOf(flow, sendMessage) + 1;
        for (auto second = first + 1; second < first + 4; ++second)
        {
            Reckoning reckoning(flow.scene, {{first, {Way::Kind::HelperDies}}, {second, {Way::Kind::HelperDies}}});
            reckoning.Run(flow.rules, flow.role);
            EXPECT_EQ(reckoning.Result().tasksEnded, 1U);
            EXPECT_EQ(reckoning.Result().completions, std::vector<unsigned>{2});
            EXPECT_TRUE(reckoning.Result().answers.at(0).isGiven);
        }
    }
}
