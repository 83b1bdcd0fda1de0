#include "service/NotificationAppService.h"
#include "tests/flow/ServiceFlow.h"
#include "tests/support/Banner.h"

namespace
{

using test::Error;
using test::Info;
using test::Lines;
using VelmoNotificationClient::NotificationAppService;
using winrt::Windows::ApplicationModel::AppService::AppServiceClosedStatus;
using winrt::Windows::ApplicationModel::AppService::AppServiceConnection;
using winrt::Windows::ApplicationModel::AppService::AppServiceConnectionStatus;

std::wstring const canceled =
    Info(L"Inside OnTaskCanceled VelmoNotificationClient UwpNotificationAppService::OnTaskCanceled deferral complete");
std::wstring const canceledError = Error(
    L"Inside OnTaskCanceled VelmoNotificationClient UwpNotificationAppService::OnTaskCanceled deferral complete error");
std::wstring const closed = Info(L"AppService Closed");

bool HasConnection()
{
    return NotificationAppService::appServiceConnection.Get() != nullptr;
}

bool HasDeferral()
{
    return NotificationAppService::serviceDeferral.Get() != nullptr;
}

class Connection : public test::ServiceFlow
{
};

TEST_F(Connection, IsTakenOverByTheServiceWithoutADeferralOfTheApps)
{
    EXPECT_EQ(Messages(),
              (Lines{test::banner, L"Inside OnBackgroundActivated", L"App service connection request received",
                     L"Inside ServiceNewConnection .", L"ServiceNewConnection deferral."}));
    EXPECT_TRUE(HasConnection());
    EXPECT_TRUE(HasDeferral());
    EXPECT_EQ(CountReports(L"task-completed"), 0u);
}

TEST_F(Connection, EndsWhenTheHelperClosesIt)
{
    helper->Close();
    ExpectLog({}, {canceled}, {closed});
    EXPECT_FALSE(HasConnection());
    EXPECT_FALSE(HasDeferral());
    EXPECT_EQ(CountReports(L"task-completed"), 1u);
}

TEST_F(Connection, IsClosedWhenTheTaskIsCanceled)
{
    host.CancelTasks(0);
    log->WaitForMessage(canceled.substr(canceled.find(L"Inside")));
    EXPECT_EQ(helper->WaitForClosed(), AppServiceClosedStatus::Canceled);
    host.WaitUntilQuiet();
    EXPECT_FALSE(HasConnection());
    EXPECT_FALSE(HasDeferral());
    EXPECT_EQ(CountReports(L"task-completed"), 1u);
}

TEST_F(Connection, IsClosedAlsoWhenTheCanceledTaskCannotBeCompleted)
{
    host.SetFault(L"BackgroundTaskDeferral.Complete now 0x80004005");
    host.CancelTasks(0);
    EXPECT_EQ(helper->WaitForClosed(), AppServiceClosedStatus::Completed);
    host.WaitUntilQuiet();
    ExpectLog({canceled, canceledError});
    EXPECT_FALSE(HasConnection());
    EXPECT_TRUE(HasDeferral()); // it keeps what it could not complete
}

TEST_F(Connection, HasNothingLeftToDoAtItsSecondEnd)
{
    NotificationAppService::OnTaskCanceled(nullptr, {});
    NotificationAppService::OnServiceClosed(nullptr, nullptr);
    EXPECT_FALSE(HasConnection());
    EXPECT_FALSE(HasDeferral());
}

TEST_F(Connection, FailsToThePlatformWhenItCannotBeCompletedOrClosed)
{
    // The platform's, which faults strike.
    auto const callOnServiceClosed = [] {
        std::thread([] {
            EXPECT_THROW(NotificationAppService::OnServiceClosed(nullptr, nullptr), winrt::hresult_error);
        }).join();
    };
    host.SetFault(L"BackgroundTaskDeferral.Complete now 0x80004005 1");
    callOnServiceClosed();
    EXPECT_TRUE(HasDeferral());
    EXPECT_TRUE(HasConnection());
    host.SetFault(L"AppServiceConnection.Close now 0x80004005 1");
    callOnServiceClosed();
    EXPECT_FALSE(HasDeferral());
    EXPECT_TRUE(HasConnection());
}

TEST_F(Connection, ReplacesAnEarlierOneWithoutClosingOrCompletingIt)
{
    auto const earlier = NotificationAppService::appServiceConnection.Get();
    test::TestHelper const newer;
    EXPECT_NE(NotificationAppService::appServiceConnection.Get(), earlier);
    EXPECT_EQ(CountReports(L"task-completed"), 0u);
    helper->Ask(L"UnregisterBackgroundTask").get(); // the earlier one still serves; replies go out on the newer one
    EXPECT_EQ(newer.WaitForMessages(1), Lines{L"NewMessage=UnregisterBackgroundTaskDone"});
    EXPECT_EQ(helper->Messages(), Lines());
}

TEST_F(Connection, LetsAReplyThatIsDueAfterItsEndFailAsASendThatCannotStart)
{
    host.SetFault(L"PushNotificationChannelManager.CreatePushNotificationChannelForApplicationAsync delay 300");
    helper->Ask(L"GetChannelUri");
    log->WaitForMessage(L"RequestReceived for channel URI");
    NotificationAppService::OnTaskCanceled(nullptr, {});
    log->WaitForMessage(L"GetChannelUriStr Deferral Complete with exception, failed to send response to Helper APP");
    log->WaitForMessage(L"Inside GetChannelUriStr, task executed no exception seen");
}

// A platform that fails while the connection is taken over: the app ends, as it does with any failing activation.
class ConnectionNotTaken : public test::AppFlow, public testing::WithParamInterface<wchar_t const*>
{
};

TEST_P(ConnectionNotTaken, EndsTheProcess)
{
    host.SetFault(GetParam());
    Start();
    AppServiceConnection const connection;
    connection.AppServiceName(sim::LocalPlatform::appServiceName);
    connection.PackageFamilyName(sim::LocalPlatform::familyName);
    auto const opening = connection.OpenAsync();
    WaitForEnd();
    EXPECT_TRUE(host.Failure().has_value());
    auto const lines = Messages();
    EXPECT_EQ(lines[1], L"Inside OnBackgroundActivated");
    NotificationAppService::appServiceConnection.Set(nullptr);
    NotificationAppService::serviceDeferral.Set(nullptr);
}

INSTANTIATE_TEST_SUITE_P(Failures, ConnectionNotTaken,
                         testing::Values(L"BackgroundActivatedEventArgs.TaskInstance now 0x80004005",
                                         L"BackgroundTaskInstance.TriggerDetails now 0x80004005",
                                         L"BackgroundTaskInstance.TriggerDetails null 1 after 1",
                                         L"BackgroundTaskInstance.GetDeferral now 0x80004005",
                                         L"BackgroundTaskInstance.Canceled now 0x80004005",
                                         L"AppServiceTriggerDetails.AppServiceConnection now 0x80004005",
                                         L"AppServiceTriggerDetails.AppServiceConnection null",
                                         L"AppServiceConnection.ServiceClosed now 0x80004005",
                                         L"AppServiceConnection.RequestReceived now 0x80004005"));

} // namespace
