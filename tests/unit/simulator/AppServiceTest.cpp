#include "simulator/protocol/Frames.h"
#include "tests/unit/simulator/BackgroundApp.h"

#include <algorithm>
#include <objidl.h>
#include <windows.h>

using namespace test;
using winrt::Windows::Foundation::AsyncStatus;
using winrt::Windows::Foundation::PropertyValue;

namespace
{

constexpr auto closed = static_cast<std::int32_t>(0x80000013);
constexpr auto illegalCall = static_cast<std::int32_t>(0x8000000E);
constexpr auto illegalAssignment = static_cast<std::int32_t>(0x80000018);
constexpr auto unsupportedType = static_cast<std::int32_t>(0x8007065E);

class AppServiceTest : public ServiceApp
{
  protected:
    // Answers each request with its own message.
    void Echo()
    {
        onRequest = [](auto&&, Args const& args) {
            auto const deferral = args.GetDeferral();
            args.Request().SendResponseAsync(args.Request().Message()).get();
            deferral.Complete();
        };
    }

    static winrt::hstring Sent(AppServiceConnection const& connection, wchar_t const* text)
    {
        return winrt::unbox_value<winrt::hstring>(
            connection.SendMessageAsync(SetOf(L"Text", text)).get().Message().Lookup(L"Text"));
    }

    // Larger than any message.
    static ValueSet TooLarge()
    {
        std::vector<std::uint8_t> const bytes(sim::largestMessage);
        return SetOf({{L"Bytes", PropertyValue::CreateUInt8Array(bytes)}});
    }
};

APTTYPE CurrentApartment()
{
    APTTYPE type{};
    APTTYPEQUALIFIER qualifier{};
    CoGetApartmentType(&type, &qualifier);
    return type;
}

} // namespace

TEST_F(AppServiceTest, AreActivatedForEachConnection)
{
    std::vector<std::wstring> names;
    auto const activate = onActivated;
    onActivated = [&](IBackgroundTaskInstance const& instance) {
        auto const details = instance.TriggerDetails().as<AppServiceTriggerDetails>();
        EXPECT_EQ(details.CallerPackageFamilyName(), L"");
        EXPECT_FALSE(details.IsRemoteSystemConnection());
        EXPECT_EQ(CurrentApartment(), APTTYPE_MAINSTA);
        EXPECT_FALSE(winrt::Windows::UI::Xaml::Window::Current());
        names.emplace_back(details.Name());
        activate(instance);
    };
    auto const first = Open();
    auto const second = Open();
    EXPECT_EQ(names, (std::vector<std::wstring>{L"com.velmo.notification", L"com.velmo.notification"}));
    EXPECT_NE(served[0], served[1]);
}

TEST_F(AppServiceTest, AnswerAMessageWithTheirResponse)
{
    Echo();
    auto const connection = Open();
    auto const response = connection.SendMessageAsync(SetOf(L"Text", L"hello")).get();
    EXPECT_EQ(response.Status(), AppServiceResponseStatus::Success);
    EXPECT_EQ(TextIn(response.Message(), L"Text"), L"hello");
    host.WaitUntilQuiet();
    EXPECT_EQ(host.Completions(), std::vector<unsigned>{1});
}

TEST_F(AppServiceTest, GetMessagesInTheMultiThreadedApartment)
{
    onRequest = [](auto&&, auto&&) { EXPECT_EQ(CurrentApartment(), APTTYPE_MTA); };
    Open().SendMessageAsync(ValueSet()).get();
}

TEST_F(AppServiceTest, MayAnswerNothing)
{
    auto const response = Open().SendMessageAsync(SetOf(L"Text", L"hello")).get(); // no deferral: done at the return
    EXPECT_EQ(response.Status(), AppServiceResponseStatus::Success);
    EXPECT_EQ(response.Message().Size(), 0u);
}

TEST_F(AppServiceTest, AnswerWhenTheDeferralIsCompletedAndNotBefore)
{
    AppServiceDeferral deferral{nullptr};
    onRequest = [&](auto&&, Args const& args) {
        deferral = args.GetDeferral();
        args.Request().SendResponseAsync(ValueSet()).get();
    };
    auto const connection = Open();
    auto const sending = connection.SendMessageAsync(ValueSet());
    host.WaitUntilQuiet();
    EXPECT_EQ(sending.Status(), AsyncStatus::Started);
    deferral.Complete();
    EXPECT_EQ(sending.get().Status(), AppServiceResponseStatus::Success);
}

TEST_F(AppServiceTest, MayCompleteADeferralAgain)
{
    onRequest = [&](auto&&, Args const& args) {
        auto const deferral = args.GetDeferral();
        deferral.Complete();
        deferral.Complete();
    };
    auto const connection = Open();
    connection.SendMessageAsync(ValueSet()).get();
    connection.SendMessageAsync(ValueSet()).get();
    host.WaitUntilQuiet();
    EXPECT_EQ(host.Completions(), (std::vector<unsigned>{2, 2}));
}

TEST_F(AppServiceTest, DoNotCompleteADeferralThatIsReleased)
{
    onRequest = [&](auto&&, Args const& args) { args.GetDeferral(); };
    auto const connection = Open();
    auto const sending = connection.SendMessageAsync(ValueSet());
    host.WaitUntilQuiet();
    EXPECT_EQ(sending.Status(), AsyncStatus::Started);
    EndApp();
    EXPECT_EQ(sending.get().Status(), AppServiceResponseStatus::Failure);
}

TEST_F(AppServiceTest, KeepARequestOpenWhoseHandlerFails)
{
    onRequest = [&](auto&&, Args const& args) {
        args.GetDeferral();
        throw winrt::hresult_error(E_FAIL);
    };
    auto const connection = Open();
    auto const sending = connection.SendMessageAsync(ValueSet());
    host.WaitUntilQuiet();
    EXPECT_EQ(sending.Status(), AsyncStatus::Started); // never done with, and nothing worse
    Echo();
    EXPECT_EQ(Sent(connection, L"next"), L"next");
}

TEST_F(AppServiceTest, MayRespondOnce)
{
    std::vector<AppServiceResponseStatus> statuses;
    onRequest = [&](auto&&, Args const& args) {
        auto const deferral = args.GetDeferral();
        statuses.push_back(args.Request().SendResponseAsync(SetOf(L"Text", L"first")).get());
        statuses.push_back(args.Request().SendResponseAsync(SetOf(L"Text", L"second")).get());
        deferral.Complete();
    };
    EXPECT_EQ(Sent(Open(), L"x"), L"first");
    EXPECT_EQ(statuses, (std::vector{AppServiceResponseStatus::Success, AppServiceResponseStatus::Failure}));
}

TEST_F(AppServiceTest, MaySendThemselves)
{
    auto const connection = Open();
    std::vector<std::wstring> got;
    connection.RequestReceived([&](AppServiceConnection const& sender, Args const& args) {
        EXPECT_EQ(sender, connection);
        got.push_back(TextIn(args.Request().Message(), L"Text"));
        args.Request().SendResponseAsync(SetOf(L"Text", L"thanks")).get();
    });
    auto const response = served[0].SendMessageAsync(SetOf(L"Text", L"news")).get();
    EXPECT_EQ(response.Status(), AppServiceResponseStatus::Success);
    EXPECT_EQ(TextIn(response.Message(), L"Text"), L"thanks");
    EXPECT_EQ(got, std::vector<std::wstring>{L"news"});
}

TEST_F(AppServiceTest, FailToSendToACallerThatDoesNotListen)
{
    auto const connection = Open();
    EXPECT_EQ(served[0].SendMessageAsync(ValueSet()).get().Status(), AppServiceResponseStatus::Failure);
}

TEST_F(AppServiceTest, SendInOrder)
{
    auto const connection = Open();
    std::vector<std::wstring> got;
    connection.RequestReceived(
        [&](auto&&, Args const& args) { got.push_back(TextIn(args.Request().Message(), L"Text")); });
    std::vector<std::wstring> sent;
    for (int i = 0; i < 100; ++i)
    {
        sent.push_back(std::to_wstring(i));
        served[0].SendMessageAsync(SetOf(L"Text", sent.back().c_str()));
    }
    host.WaitUntilQuiet();
    EXPECT_EQ(got, sent);
}

TEST_F(AppServiceTest, SendBeforeTheCallerKnowsThatItIsConnected)
{
    auto const activate = onActivated;
    winrt::Windows::Foundation::IAsyncOperation<AppServiceResponse> sending;
    onActivated = [&](IBackgroundTaskInstance const& instance) {
        activate(instance);
        sending = served[0].SendMessageAsync(SetOf(L"Text", L"welcome"));
    };
    auto const connection = NewConnection();
    Signal received;
    connection.RequestReceived([&](auto&&, Args const& args) {
        EXPECT_EQ(TextIn(args.Request().Message(), L"Text"), L"welcome");
        received.Set();
    });
    EXPECT_EQ(connection.OpenAsync().get(), AppServiceConnectionStatus::Success);
    received.Wait();
    EXPECT_EQ(sending.get().Status(), AppServiceResponseStatus::Success);
}

TEST_F(AppServiceTest, GetWhatCameBeforeTheyListened)
{
    onActivated = [&](IBackgroundTaskInstance const& instance) {
        deferrals.push_back(instance.GetDeferral());
        served.push_back(instance.TriggerDetails().as<AppServiceTriggerDetails>().AppServiceConnection());
    };
    auto const connection = Open();
    auto const first = connection.SendMessageAsync(SetOf(L"Text", L"1"));
    auto const second = connection.SendMessageAsync(SetOf(L"Text", L"2"));
    host.WaitUntilQuiet();
    std::vector<std::wstring> got;
    served[0].RequestReceived(
        [&](auto&&, Args const& args) { got.push_back(TextIn(args.Request().Message(), L"Text")); });
    first.get();
    second.get();
    EXPECT_EQ(got, (std::vector<std::wstring>{L"1", L"2"}));
}

TEST_F(AppServiceTest, GetCopies)
{
    ValueSet got{nullptr};
    onRequest = [&](auto&&, Args const& args) { got = args.Request().Message(); };
    auto const message = SetOf(L"Text", L"before");
    auto const connection = Open();
    auto const sending = connection.SendMessageAsync(message);
    message.Insert(L"Text", winrt::box_value(L"after"));
    sending.get();
    EXPECT_EQ(TextIn(got, L"Text"), L"before");
}

TEST_F(AppServiceTest, CarryAMegabyte)
{
    Echo();
    std::wstring const text(1'000'000, L'x');
    EXPECT_EQ(Sent(Open(), text.c_str()), text);
}

TEST_F(AppServiceTest, CarryAMegabyteOfBytes)
{
    Echo();
    std::vector<std::uint8_t> bytes(1 << 20);
    std::ranges::generate(bytes, [byte = std::uint8_t{}]() mutable { return byte += 7; });
    auto const response = Open().SendMessageAsync(SetOf({{L"Bytes", PropertyValue::CreateUInt8Array(bytes)}})).get();
    winrt::com_array<std::uint8_t> got;
    response.Message().Lookup(L"Bytes").as<winrt::Windows::Foundation::IPropertyValue>().GetUInt8Array(got);
    EXPECT_TRUE(std::ranges::equal(got, bytes));
}

TEST_F(AppServiceTest, GetNoMessageThatIsTooLarge)
{
    std::atomic<int> requests = 0;
    onRequest = [&](auto&&...) { ++requests; };
    auto const connection = Open();
    auto const response = connection.SendMessageAsync(TooLarge()).get();
    EXPECT_EQ(response.Status(), AppServiceResponseStatus::MessageSizeTooLarge);
    EXPECT_EQ(response.Message().Size(), 0u);
    EXPECT_EQ(connection.SendMessageAsync(ValueSet()).get().Status(), AppServiceResponseStatus::Success);
    EXPECT_EQ(requests, 1);
}

TEST_F(AppServiceTest, GiveNoResponseThatIsTooLarge)
{
    std::vector<AppServiceResponseStatus> statuses;
    onRequest = [&](auto&&, Args const& args) {
        auto const deferral = args.GetDeferral();
        statuses.push_back(args.Request().SendResponseAsync(TooLarge()).get());
        statuses.push_back(args.Request().SendResponseAsync(SetOf(L"Text", L"small")).get());
        deferral.Complete();
    };
    EXPECT_EQ(Sent(Open(), L"x"), L"small");
    EXPECT_EQ(statuses,
              (std::vector{AppServiceResponseStatus::MessageSizeTooLarge, AppServiceResponseStatus::Success}));
}

TEST_F(AppServiceTest, MayHaveTheirSendsCancelledAtOnce)
{
    AppServiceDeferral deferral{nullptr};
    onRequest = [&](auto&&, Args const& args) { deferral = args.GetDeferral(); };
    auto const connection = Open();
    auto const sending = connection.SendMessageAsync(ValueSet());
    host.WaitUntilQuiet();
    sim::Handle const completed(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    sending.Completed([&, caller = GetCurrentThreadId()](auto&&, AsyncStatus status) {
        EXPECT_NE(GetCurrentThreadId(), caller);
        EXPECT_EQ(status, AsyncStatus::Canceled);
        SetEvent(completed.Get());
    });
    sending.Cancel();
    EXPECT_EQ(sending.Status(), AsyncStatus::Canceled);
    constexpr DWORD limitMilliseconds = 30'000;
    ASSERT_EQ(WaitForSingleObject(completed.Get(), limitMilliseconds), WAIT_OBJECT_0)
        << "it is cancelled, and still waits for the response";
    EXPECT_THROW(sending.GetResults(), winrt::hresult_canceled);
    EXPECT_EQ(sending.ErrorCode(), winrt::hresult_canceled().code());
    deferral.Complete(); // what it ends with now is nobody's
    host.WaitUntilQuiet();
    EXPECT_EQ(sending.Status(), AsyncStatus::Canceled);
    EXPECT_EQ(FailureOf([&] { sending.Completed([](auto&&...) {}); }), illegalAssignment);
    sending.Cancel(); // once more does nothing
    auto const next = connection.SendMessageAsync(ValueSet());
    host.WaitUntilQuiet();
    deferral.Complete();
    EXPECT_EQ(next.get().Status(), AppServiceResponseStatus::Success);
    next.Cancel(); // too late
    EXPECT_EQ(next.Status(), AsyncStatus::Completed);
}

TEST_F(AppServiceTest, CanBeCancelledEvenIfTheyWouldNeverComplete)
{
    auto const connection = Open();
    host.SetFault(L"AppServiceConnection.SendMessageAsync never");
    auto const sending = connection.SendMessageAsync(ValueSet());
    sending.Cancel();
    EXPECT_THROW(sending.get(), winrt::hresult_canceled);
}

TEST_F(AppServiceTest, LeaveNothingBehindOfManyRequests)
{
    onRequest = [](AppServiceConnection const& connection, Args const& args) {
        auto const deferral = args.GetDeferral();
        connection.SendMessageAsync(args.Request().Message()).get();
        args.Request().SendResponseAsync(args.Request().Message()).get();
        deferral.Complete();
    };
    auto const connection = Open();
    connection.RequestReceived([](auto&&, Args const& args) { args.GetDeferral().Complete(); });
    auto const send = [&](int times) {
        for (int i = 0; i < times; ++i)
        {
            Sent(connection, L"text");
        }
        host.WaitUntilQuiet();
        return winrt::get_module_lock().load(); // how many objects are alive
    };
    // The UI thread may still hold what the connection was activated with.
    auto const before = send(10);
    EXPECT_LT(send(500), before + 500);
}

TEST_F(AppServiceTest, LeaveNothingBehindOfManyConnections)
{
    auto const activate = onActivated;
    onActivated = [&](IBackgroundTaskInstance const& instance) {
        activate(instance);
        instance.Canceled([deferral = deferrals.back()](auto&&...) { deferral.Complete(); });
        deferrals.clear();
        served.clear();
    };
    auto const connect = [&](std::size_t from, std::size_t to) {
        for (auto i = from; i < to; ++i)
        {
            Open().SendMessageAsync(ValueSet()).get();
            host.WaitForReport(L"task-completed", i + 1);
        }
        host.WaitUntilQuiet();
        return winrt::get_module_lock().load();
    };
    // The UI thread may still hold what the last connection was activated with.
    auto const before = connect(0, 10);
    EXPECT_LT(connect(10, 100), before + 90);
}

TEST_F(AppServiceTest, AreNotHeldUpByABlockedHandlerOfAnotherConnection)
{
    constexpr int count = 8;
    Signal release;
    std::atomic<int> blocked = 0;
    Signal allBlocked;
    onRequest = [&](auto&&, Args const& args) {
        if (args.Request().Message().HasKey(L"Block"))
        {
            if (++blocked == count)
            {
                allBlocked.Set();
            }
            release.Wait();
        }
    };
    std::vector<AppServiceConnection> connections;
    std::vector<winrt::Windows::Foundation::IAsyncOperation<AppServiceResponse>> sent;
    for (int i = 0; i < count; ++i)
    {
        connections.push_back(Open());
        sent.push_back(connections.back().SendMessageAsync(SetOf(L"Block", L"yes")));
    }
    allBlocked.Wait();
    EXPECT_EQ(Open().SendMessageAsync(ValueSet()).get().Status(), AppServiceResponseStatus::Success);
    release.Set();
    for (auto const& operation : sent)
    {
        EXPECT_EQ(operation.get().Status(), AppServiceResponseStatus::Success);
    }
}

TEST_F(AppServiceTest, AreFoundByNameAndFamily)
{
    auto const noService = NewConnection();
    noService.AppServiceName(L"com.velmo.nothing");
    EXPECT_EQ(noService.OpenAsync().get(), AppServiceConnectionStatus::AppServiceUnavailable);
    auto const noApp = NewConnection();
    noApp.PackageFamilyName(L"Nobody.App_0123456789abc");
    EXPECT_EQ(noApp.OpenAsync().get(), AppServiceConnectionStatus::AppNotInstalled);
    EXPECT_EQ(FailureOf([&] { noApp.SendMessageAsync(ValueSet()); }), illegalCall);
}

TEST_F(AppServiceTest, MayBeTriedAgainAfterAFailure)
{
    Echo();
    auto const connection = NewConnection();
    auto const name = connection.AppServiceName();
    connection.AppServiceName(L"com.velmo.nothing");
    EXPECT_EQ(connection.OpenAsync().get(), AppServiceConnectionStatus::AppServiceUnavailable);
    connection.AppServiceName(name);
    EXPECT_EQ(connection.OpenAsync().get(), AppServiceConnectionStatus::Success);
    EXPECT_EQ(Sent(connection, L"hello"), L"hello");
}

TEST_F(AppServiceTest, TakeNoNullForAHandler)
{
    auto const connection = NewConnection();
    EXPECT_EQ(FailureOf([&] { connection.RequestReceived(nullptr); }), E_INVALIDARG);
    EXPECT_EQ(FailureOf([&] { connection.ServiceClosed(nullptr); }), E_INVALIDARG);
    onActivated = [](IBackgroundTaskInstance const& instance) {
        EXPECT_EQ(FailureOf([&] { instance.Canceled(nullptr); }), E_INVALIDARG);
    };
    EXPECT_EQ(connection.OpenAsync().get(), AppServiceConnectionStatus::Success);
}

TEST_F(AppServiceTest, TakeNoMessageFromAConnectionThatIsNotOpen)
{
    auto const connection = NewConnection();
    EXPECT_EQ(FailureOf([&] { connection.SendMessageAsync(ValueSet()); }), illegalCall);
    connection.OpenAsync().get();
    EXPECT_EQ(FailureOf([&] { connection.OpenAsync(); }), illegalCall);
    connection.Close();
    connection.Close();
    EXPECT_EQ(FailureOf([&] { connection.SendMessageAsync(ValueSet()); }), closed);
    EXPECT_EQ(FailureOf([&] { connection.OpenAsync(); }), closed);
    connection.RequestReceived([](auto&&...) {}); // is not refused, and never called
}

TEST_F(AppServiceTest, GetNoValuesThatCannotTravel)
{
    auto const connection = Open();
    EXPECT_EQ(FailureOf([&] { connection.SendMessageAsync(SetOf({{L"Object", connection}})); }), unsupportedType);
    EXPECT_EQ(FailureOf([&] { connection.SendMessageAsync(nullptr); }), E_INVALIDARG);
}

TEST_F(AppServiceTest, HearThatTheCallerHasClosedAndAreCancelled)
{
    Open().Close();
    EXPECT_EQ(closings.Next(), AppServiceClosedStatus::Completed);
    EXPECT_EQ(cancellations.Next(), BackgroundTaskCancellationReason::ResourceRevocation);
    EXPECT_EQ(served[0].SendMessageAsync(ValueSet()).get().Status(), AppServiceResponseStatus::Failure);
}

// Many rounds: told side by side, the cancellation would be quicker in some.
TEST_F(AppServiceTest, HearThatTheCallerHasClosedEvenIfTheyCloseWhenTheyAreCancelled)
{
    onActivated = [this, activated = onActivated](IBackgroundTaskInstance const& instance) {
        activated(instance);
        instance.Canceled([connection = served.back()](auto&&...) { connection.Close(); });
    };
    for (int round = 0; round < 100; ++round)
    {
        Open().Close();
        EXPECT_EQ(closings.Next(), AppServiceClosedStatus::Completed);
    }
}

TEST_F(AppServiceTest, HearThatTheCallerHasLetGo)
{
    Open();
    EXPECT_EQ(closings.Next(), AppServiceClosedStatus::Completed);
}

TEST_F(AppServiceTest, HearThatTheCallerWasKilled)
{
    Echo();
    auto const connection = Open();
    host.KillCaller();
    EXPECT_EQ(closings.Next(), AppServiceClosedStatus::Canceled);
    EXPECT_EQ(cancellations.Next(), BackgroundTaskCancellationReason::ResourceRevocation);
    EXPECT_EQ(Sent(Open(), L"next"), L"next");
}

TEST_F(AppServiceTest, TellTheirCallersThatTheyEnd)
{
    Signal isClosed;
    auto const connection = Open();
    connection.ServiceClosed([&](AppServiceConnection const& sender, AppServiceClosedEventArgs const& args) {
        EXPECT_EQ(sender, connection);
        EXPECT_EQ(args.Status(), AppServiceClosedStatus::Canceled);
        isClosed.Set();
    });
    EndApp();
    isClosed.Wait();
    EXPECT_EQ(connection.SendMessageAsync(ValueSet()).get().Status(), AppServiceResponseStatus::Failure);
}

TEST_F(AppServiceTest, EndTheirConnectionWithTheirTask)
{
    Signal isClosed;
    auto const connection = Open();
    connection.ServiceClosed([&](auto&&, AppServiceClosedEventArgs const& args) {
        EXPECT_EQ(args.Status(), AppServiceClosedStatus::Completed);
        isClosed.Set();
    });
    deferrals[0].Complete();
    isClosed.Wait();
    host.WaitForReport(L"task-completed");
}

TEST_F(AppServiceTest, HaveTheirConnectionKeptByTheirTask)
{
    Echo();
    auto const connection = Open();
    served.clear();
    deferrals.clear(); // released, not completed
    EXPECT_EQ(Sent(connection, L"still there"), L"still there");
    EXPECT_EQ(CountReports(L"task-completed"), 0u);
}

TEST_F(AppServiceTest, EndAtOnceWithoutADeferral)
{
    onActivated = [](auto&&) {};
    auto const connection = NewConnection();
    connection.OpenAsync().get();
    host.WaitForReport(L"task-completed");
    EXPECT_EQ(connection.SendMessageAsync(ValueSet()).get().Status(), AppServiceResponseStatus::Failure);
}

TEST_F(AppServiceTest, FailToOpenOnRequest)
{
    host.SetFault(L"AppServiceConnection.OpenAsync now 0x80004005 1");
    auto const connection = NewConnection();
    EXPECT_EQ(FailureOf([&] { connection.OpenAsync(); }), E_FAIL);
    host.SetFault(L"AppServiceConnection.OpenAsync status 4 1");
    EXPECT_EQ(connection.OpenAsync().get(), AppServiceConnectionStatus::Unknown);
    EXPECT_EQ(CountReports(L"task-started"), 0u);
}

TEST_F(AppServiceTest, FailToSendOnRequest)
{
    auto const connection = Open();
    auto const send = [&] { return connection.SendMessageAsync(ValueSet()); };
    int received = 0;
    onRequest = [&](auto&&...) { ++received; };
    host.SetFault(L"AppServiceConnection.SendMessageAsync now 0x80004005 1");
    EXPECT_EQ(FailureOf([&] { send(); }), E_FAIL);
    host.SetFault(L"AppServiceConnection.SendMessageAsync null 1");
    EXPECT_FALSE(send());
    host.SetFault(L"AppServiceConnection.SendMessageAsync completion 0x80004005 1");
    EXPECT_EQ(FailureOf([&] { send().get(); }), E_FAIL);
    host.SetFault(L"AppServiceConnection.SendMessageAsync cancelled 1");
    auto const cancelled = send();
    EXPECT_EQ(FailureOf([&] { cancelled.get(); }), static_cast<std::int32_t>(0x800704C7));
    EXPECT_EQ(cancelled.Status(), AsyncStatus::Canceled);
    host.SetFault(L"AppServiceConnection.SendMessageAsync status 2 1");
    EXPECT_EQ(send().get().Status(), AppServiceResponseStatus::ResourceLimitsExceeded);
    host.SetFault(L"AppServiceConnection.SendMessageAsync never 1");
    EXPECT_EQ(send().Status(), AsyncStatus::Started);
    EXPECT_EQ(received, 0);
    host.SetFault(L"AppServiceConnection.SendMessageAsync now 0x80004005 1 after 1");
    EXPECT_EQ(send().get().Status(), AppServiceResponseStatus::Success);
    EXPECT_EQ(FailureOf([&] { send(); }), E_FAIL);
    EXPECT_EQ(received, 1);
}

TEST_F(AppServiceTest, FailToRespondOnRequest)
{
    onRequest = [&](auto&&, Args const& args) {
        auto const respond = [&] { return args.Request().SendResponseAsync(ValueSet()); };
        EXPECT_EQ(FailureOf([&] { respond(); }), E_FAIL);
        host.SetFault(L"AppServiceRequest.SendResponseAsync status 1 1");
        EXPECT_EQ(respond().get(), AppServiceResponseStatus::Failure);
        host.SetFault(L"AppServiceRequest.SendResponseAsync completion 0x80004005 1");
        EXPECT_EQ(FailureOf([&] { respond().get(); }), E_FAIL);
        EXPECT_EQ(respond().get(), AppServiceResponseStatus::Success);
    };
    host.SetFault(L"AppServiceRequest.SendResponseAsync now 0x80004005 1");
    Open().SendMessageAsync(ValueSet()).get();
}

TEST_F(AppServiceTest, FailInTheirHandlersOnRequest)
{
    for (auto const* const call : {L"AppServiceRequestReceivedEventArgs.GetDeferral", L"AppServiceRequest.Message",
                                   L"AppServiceRequestReceivedEventArgs.Request", L"AppServiceDeferral.Complete"})
    {
        host.SetFault(std::wstring(call) + L" now 0x80004005");
    }
    onRequest = [&](auto&&, Args const& args) {
        EXPECT_EQ(FailureOf([&] { args.GetDeferral(); }), E_FAIL);
        EXPECT_EQ(FailureOf([&] { args.Request(); }), E_FAIL);
        host.ClearFaults();
        host.SetFault(L"AppServiceRequest.Message null");
        host.SetFault(L"AppServiceDeferral.Complete now 0x80004005 1");
        EXPECT_FALSE(args.Request().Message());
        auto const deferral = args.GetDeferral();
        EXPECT_EQ(FailureOf([&] { deferral.Complete(); }), E_FAIL);
        deferral.Complete();
    };
    Open().SendMessageAsync(ValueSet()).get();
    EXPECT_EQ(host.Completions(), std::vector<unsigned>{1});
}

TEST_F(AppServiceTest, FailToListenOnRequest)
{
    auto const connection = NewConnection();
    host.SetFault(L"AppServiceConnection.RequestReceived now 0x80004005");
    host.SetFault(L"AppServiceConnection.ServiceClosed now 0x80004005");
    host.SetFault(L"AppServiceConnection.Close now 0x80004005 1");
    EXPECT_EQ(FailureOf([&] { connection.RequestReceived([](auto&&...) {}); }), E_FAIL);
    EXPECT_EQ(FailureOf([&] { connection.ServiceClosed([](auto&&...) {}); }), E_FAIL);
    EXPECT_EQ(FailureOf([&] { connection.Close(); }), E_FAIL);
}

TEST_F(AppServiceTest, AreSubjectToFaultsAndTheExemptThreadIsNot)
{
    onRequest = [&](auto&&, auto&&) { EXPECT_EQ(FailureOf([] { ValueSet().Insert(L"a", nullptr); }), E_FAIL); };
    auto const connection = Open();
    host.ExemptThisThread();
    host.SetFault(L"ValueSet.Insert now 0x80004005");
    EXPECT_EQ(connection.SendMessageAsync(SetOf(L"Text", L"x")).get().Status(), AppServiceResponseStatus::Success);
}

TEST_F(AppServiceTest, CanBeActivatedForAConnectionOfNobody)
{
    Signal isActivated;
    auto const activate = onActivated;
    onActivated = [&](IBackgroundTaskInstance const& instance) {
        activate(instance);
        isActivated.Set();
    };
    auto const instance = host.ActivateAppService();
    isActivated.Wait();
    EXPECT_EQ(served[0].SendMessageAsync(ValueSet()).get().Status(), AppServiceResponseStatus::Failure);
    host.Cancel(instance, 1);
    EXPECT_EQ(cancellations.Next(), BackgroundTaskCancellationReason::Terminating);
    deferrals[0].Complete();
    EXPECT_EQ(host.WaitForReport(L"task-completed").Detail(L"instance"), std::to_wstring(instance));
}
