#include "service/NotificationAppService.h"
#include "tests/flow/ServiceFlow.h"
#include "tests/support/Banner.h"

#include <optional>

namespace
{

using test::Error;
using test::ExpectLines;
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
    ExpectLines(Messages(),
                {test::banner, L"Inside OnBackgroundActivated", L"App service connection request received",
                 L"AppService: Inside ServiceNewConnection .", L"AppService: ServiceNewConnection deferral."});
    EXPECT_TRUE(HasConnection());
    EXPECT_TRUE(HasDeferral());
    EXPECT_EQ(CountReports(L"task-completed"), 0u);
}

TEST_F(Connection, IsServedByAnObjectThatTellsItsRuntimeClass)
{
    EXPECT_EQ(winrt::get_class_name(winrt::make<NotificationAppService>()),
              L"VelmoNotificationClient.NotificationAppService");
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
    helper->WaitForClosed(); // by the end of the task, or by the app's closing it
    host.WaitForReport(L"task-completed");
    host.WaitUntilQuiet();
    ExpectLog({canceled});
    EXPECT_FALSE(HasConnection());
    EXPECT_FALSE(HasDeferral());
    EXPECT_EQ(CountReports(L"task-completed"), 1u);
}

TEST_F(Connection, FailsToThePlatformWhenTheCanceledTasksConnectionCannotBeClosed)
{
    host.SetFault(L"AppServiceConnection.Close now 0x80004005 1");
    std::thread([] { EXPECT_THROW(NotificationAppService::OnTaskCanceled(nullptr, {}), winrt::hresult_error); }).join();
    ExpectLog({canceled});
    EXPECT_TRUE(HasConnection());
    EXPECT_FALSE(HasDeferral());
}

TEST_F(Connection, HasItsDeferralReplacedByANewerOnes)
{
    auto const earlier = NotificationAppService::serviceDeferral.Get();
    test::TestHelper const newer;
    EXPECT_NE(NotificationAppService::serviceDeferral.Get(), earlier);
}

class ConnectionNotCompleted : public Connection, public testing::WithParamInterface<wchar_t const*>
{
};

TEST_P(ConnectionNotCompleted, IsClosedWhenTheTaskIsCanceled)
{
    host.SetFault(std::wstring(L"BackgroundTaskDeferral.Complete now ") + GetParam());
    host.CancelTasks(0);
    EXPECT_EQ(helper->WaitForClosed(), AppServiceClosedStatus::Completed);
    host.WaitUntilQuiet();
    ExpectLog({canceled, canceledError});
    EXPECT_FALSE(HasConnection());
    EXPECT_TRUE(HasDeferral()); // it keeps what it could not complete
}

INSTANTIATE_TEST_SUITE_P(Results, ConnectionNotCompleted, testing::Values(L"0x80004005", L"0x8007000E"));

TEST_F(Connection, HasNothingLeftToDoAtItsSecondEnd)
{
    NotificationAppService::OnTaskCanceled(nullptr, {});
    NotificationAppService::OnServiceClosed(nullptr, nullptr);
    EXPECT_FALSE(HasConnection());
    EXPECT_FALSE(HasDeferral());
}

TEST_F(Connection, FailsToThePlatformWhenItCannotBeCompletedOrClosed)
{
    // On a thread of the platform, which is not exempt from faults.
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
    host.ReplaceChannel(L"https://uri");
    log->After(L"Channel URI Received", [] { NotificationAppService::OnTaskCanceled(nullptr, {}); });
    helper->Ask(L"GetChannelUri");
    ExpectLog(test::RequestLines() +
              Lines{Info(L"RequestReceived for channel URI"), Info(L"Channel URI Received"), canceled,
                    Info(L"Received Channel URI is https://uri"),
                    Info(L"From Appservice channel : uri is written to local setting"),
                    Info(L"Channel URI found in local setting"),
                    Error(L"GetChannelUriStr Deferral Complete with exception, failed to send response to Helper APP"),
                    Info(L"Inside GetChannelUriStr, task executed no exception seen")});
    EXPECT_EQ(Completions(), std::vector<unsigned>{2});
    EXPECT_EQ(helper->Messages(), Lines());
}

// A handler of an end, and the line that it writes first.
struct EndHandler
{
    std::wstring line;
    void (*call)();

    friend void PrintTo(EndHandler const& handler, std::ostream* out) { *out << testing::PrintToString(handler.line); }
};

// What is there when the first line of an end has been written.
class ConnectionEnd : public Connection, public testing::WithParamInterface<EndHandler>
{
};

TEST_P(ConnectionEnd, BeginsWithItsLine)
{
    std::optional<bool> wasUntouched;
    log->After(GetParam().line, [&] { wasUntouched = HasConnection() && HasDeferral(); });
    GetParam().call();
    EXPECT_EQ(wasUntouched, true);
    EXPECT_FALSE(HasConnection() || HasDeferral());
}

INSTANTIATE_TEST_SUITE_P(
    Handlers, ConnectionEnd,
    testing::Values(EndHandler{L"AppService Closed", [] { NotificationAppService::OnServiceClosed(nullptr, nullptr); }},
                    EndHandler{
                        L"Inside OnTaskCanceled VelmoNotificationClient UwpNotificationAppService::OnTaskCanceled "
                        L"deferral complete",
                        [] { NotificationAppService::OnTaskCanceled(nullptr, {}); }}));

// A platform that fails while the connection is taken over: the app ends, as it does with any failing activation.
class ConnectionNotTaken : public test::AppFlow
{
  protected:
    ~ConnectionNotTaken() override
    {
        NotificationAppService::appServiceConnection.Set(nullptr);
        NotificationAppService::serviceDeferral.Set(nullptr);
    }

    // The app from its start to the end that its failure brings.
    void Fail()
    {
        host.ExemptThisThread();
        Start();
        sim::CallerScope const caller;
        AppServiceConnection const connection;
        connection.AppServiceName(sim::LocalDevice::appServiceName);
        connection.PackageFamilyName(sim::LocalDevice::familyName);
        auto const opening = connection.OpenAsync();
        WaitForEnd();
    }
};

// The call that fails, and what has been done until then.
struct Takeover
{
    wchar_t const* fault;
    Lines lines;
    bool hasDeferral;
    bool hasConnection;
};

void PrintTo(Takeover const& takeover, std::ostream* stream)
{
    *stream << testing::PrintToString(takeover.fault);
}

class ConnectionNotTakenFor : public ConnectionNotTaken, public testing::WithParamInterface<Takeover>
{
};

TEST_P(ConnectionNotTakenFor, EndsTheProcess)
{
    host.SetFault(GetParam().fault);
    Fail();
    EXPECT_TRUE(host.Failure().has_value());
    ExpectLines(Messages(), Lines({test::banner, L"Inside OnBackgroundActivated"}) + GetParam().lines);
    EXPECT_EQ(HasDeferral(), GetParam().hasDeferral);
    EXPECT_EQ(HasConnection(), GetParam().hasConnection);
}

constexpr wchar_t connectionReceived[] = L"App service connection request received";
constexpr wchar_t insideConnection[] = L"AppService: Inside ServiceNewConnection .";
constexpr wchar_t connectionDeferral[] = L"AppService: ServiceNewConnection deferral.";

INSTANTIATE_TEST_SUITE_P(
    Failures, ConnectionNotTakenFor,
    testing::Values(Takeover{L"BackgroundActivatedEventArgs.TaskInstance now 0x80004005", {}, false, false},
                    Takeover{L"BackgroundActivatedEventArgs.TaskInstance null", {}, false, false},
                    Takeover{L"BackgroundTaskInstance.TriggerDetails now 0x80004005", {}, false, false},
                    Takeover{L"BackgroundTaskInstance.GetDeferral now 0x80004005",
                             {connectionReceived, insideConnection},
                             false,
                             false},
                    Takeover{L"BackgroundTaskInstance.TriggerDetails null 1 after 1",
                             {connectionReceived, insideConnection, connectionDeferral},
                             true,
                             false},
                    Takeover{L"BackgroundTaskInstance.Canceled now 0x80004005",
                             {connectionReceived, insideConnection, connectionDeferral},
                             true,
                             false},
                    Takeover{L"AppServiceTriggerDetails.AppServiceConnection now 0x80004005",
                             {connectionReceived, insideConnection, connectionDeferral},
                             true,
                             false},
                    Takeover{L"AppServiceTriggerDetails.AppServiceConnection null",
                             {connectionReceived, insideConnection, connectionDeferral},
                             true,
                             false},
                    Takeover{L"AppServiceConnection.ServiceClosed now 0x80004005",
                             {connectionReceived, insideConnection, connectionDeferral},
                             true,
                             true},
                    Takeover{L"AppServiceConnection.RequestReceived now 0x80004005",
                             {connectionReceived, insideConnection, connectionDeferral},
                             true,
                             true}));

// A call, after how many others of the same, and another that comes later.
using CallOrder = std::pair<std::pair<std::wstring, int>, std::wstring>;

class ConnectionTakeoverOrder : public ConnectionNotTaken, public testing::WithParamInterface<CallOrder>
{
};

TEST_P(ConnectionTakeoverOrder, IsKept)
{
    auto const [first, calls] = GetParam().first;
    host.SetFault(first + L" now 0x80004005 1000 after " + std::to_wstring(calls));
    host.SetFault(GetParam().second + L" now 0x80004001");
    Fail();
    EXPECT_EQ(host.Failure(), E_FAIL);
}

INSTANTIATE_TEST_SUITE_P(
    Calls, ConnectionTakeoverOrder,
    testing::Values(
        CallOrder{{L"BackgroundTaskInstance.GetDeferral", 0}, L"BackgroundTaskInstance.Canceled"},
        CallOrder{{L"BackgroundTaskInstance.TriggerDetails", 1}, L"BackgroundTaskInstance.Canceled"},
        CallOrder{{L"BackgroundTaskInstance.Canceled", 0}, L"AppServiceTriggerDetails.AppServiceConnection"},
        CallOrder{{L"AppServiceTriggerDetails.AppServiceConnection", 0}, L"AppServiceConnection.ServiceClosed"},
        CallOrder{{L"AppServiceConnection.ServiceClosed", 0}, L"AppServiceConnection.RequestReceived"}));

} // namespace
