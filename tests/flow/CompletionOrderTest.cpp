// The order of log lines and the completions that they are about.

#include "service/BackgroundTasks.h"
#include "tests/flow/RegisteredTask.h"
#include "tests/flow/ServiceFlow.h"

namespace
{

class CompletionOrder : public test::ServiceFlow
{
  protected:
    // The number of completed requests when the line was about to be written.
    unsigned CompletionsAt(wchar_t const* message) const { return log->WaitForMessage(message); }
};

TEST_F(CompletionOrder, OfAMessageSentIsBetweenItsTwoLines)
{
    helper->Ask(L"UnregisterBackgroundTask");
    EXPECT_EQ(CompletionsAt(L"Msg sent to WIN32 for background task unregistration done"), 0u);
    EXPECT_EQ(CompletionsAt(L"UnRegisterBkgServices deferral complete"), 1u);
}

TEST_F(CompletionOrder, OfAMessageNotSentIsAfterItsLine)
{
    host.SetFault(L"AppServiceConnection.SendMessageAsync now 0x80000013 1");
    helper->Ask(L"UnregisterBackgroundTask");
    EXPECT_EQ(
        CompletionsAt(L"Error in sending response for appservice requset after sucessful bkg task unregistration"), 0u);
}

TEST_F(CompletionOrder, OfAChannelMessageNotSentIsBeforeItsLine)
{
    host.SetFault(L"PushNotificationChannelManager now 0x80040154");
    host.SetFault(L"AppServiceConnection.SendMessageAsync now 0x80000013 1");
    helper->Ask(L"GetChannelUri");
    EXPECT_EQ(CompletionsAt(L"GetChannelUriStr Deferral Complete with exception in task_creation, failed to send "
                            L"response to Helper APP"),
              1u);
}

TEST_F(CompletionOrder, OfAChannelMessageSentIsBeforeItsLine)
{
    host.SetFault(L"PushNotificationChannelManager now 0x80040154");
    helper->Ask(L"GetChannelUri");
    EXPECT_EQ(CompletionsAt(L"GetChannelUriStr Deferral Complete with exception in create task"), 1u);
}

TEST_F(CompletionOrder, OfTheChannelsUriSentIsBeforeItsLine)
{
    host.SetFault(L"AppServiceConnection.SendMessageAsync held");
    helper->Ask(L"GetChannelUri");
    EXPECT_EQ(CompletionsAt(L"Inside GetChannelUriStr, task executed no exception seen"), 1u);
    host.ClearFaults();
    EXPECT_EQ(CompletionsAt(L"GetChannelUriStr Deferral Complete"), 2u);
}

TEST_F(CompletionOrder, OfTheChannelsChainIsBeforeItsLine)
{
    host.SetFault(L"AppServiceConnection.SendMessageAsync never 1");
    helper->Ask(L"GetChannelUri");
    EXPECT_EQ(CompletionsAt(L"Inside GetChannelUriStr, task executed no exception seen"), 1u);
}

TEST_F(CompletionOrder, OfTheChannelsFailedChainIsBeforeItsLine)
{
    host.SetFault(
        L"PushNotificationChannelManager.CreatePushNotificationChannelForApplicationAsync completion 0x880403E8");
    helper->Ask(L"GetChannelUri");
    EXPECT_EQ(CompletionsAt(L"Inside GetChannelUriStr, Exception raised in tast_creation for channelURI"), 1u);
}

TEST_F(CompletionOrder, OfTheExitIsBetweenItsTwoLines)
{
    helper->Ask(L"ExitZEB");
    EXPECT_EQ(CompletionsAt(L"Ack sent to VelmoNotificationHelper for exit"), 0u);
    EXPECT_EQ(CompletionsAt(L"Exit ZEB deferral complete"), 1u);
}

TEST_F(CompletionOrder, OfTheExitNotAcknowledgedIsAfterItsLine)
{
    host.SetFault(L"AppServiceRequest.SendResponseAsync now 0x80000013");
    helper->Ask(L"ExitZEB");
    EXPECT_EQ(CompletionsAt(L"Error in sending ack still closing"), 0u);
}

// The same for a background task, with the completions that the device reports.
class CompletionOrderOfTask : public test::AppFlow
{
};

TEST_F(CompletionOrderOfTask, OfATriggerTaskIsBetweenItsTwoLines)
{
    host.ExemptThisThread();
    test::RegisterDailyTask(L"URITimerBGTask");
    Start();
    host.AdvanceClock(1440);
    auto const launch = WaitForLaunch();
    test::LogRecorder const log([this] { return static_cast<unsigned>(CountReports(L"task-completed")); });
    launch.Complete();
    EXPECT_EQ(log.WaitForMessage(L"Launch Done !! "), 0u);
    EXPECT_EQ(log.WaitForMessage(L"Service deferral complete"), 1u);
}

TEST_F(CompletionOrderOfTask, IsCutShortForARunningTaskThatIsUnregistered)
{
    host.ExemptThisThread();
    test::RegisterDailyTask(L"URITimerBGTask");
    Start();
    host.AdvanceClock(1440);
    auto const launch = WaitForLaunch();
    VelmoNotificationClient::UnregisterOwnBackgroundTasks();
    EXPECT_EQ(host.WaitForReport(L"task-cancelled").Detail(L"reason"), L"Abort");
    EXPECT_EQ(CountReports(L"task-completed"), 0u);
    launch.Complete();
    host.WaitForReport(L"task-completed");
    EXPECT_EQ(CountReports(L"task-cancelled"), 1u);
    EXPECT_EQ(Messages().back(), L"Service deferral complete");
}

} // namespace
