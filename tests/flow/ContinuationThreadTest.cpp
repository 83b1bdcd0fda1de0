// The thread on which the application continues after a platform operation: never the one that started it, also when
// the operation has completed before the handler is set.

#include "service/NotificationAppService.h"
#include "service/WhenEnded.h"
#include "tests/flow/FakeRequest.h"
#include "tests/flow/ServiceFlow.h"
#include "tests/support/Terminated.h"

#include <winrt/Windows.Foundation.h>

using VelmoNotificationClient::NotificationAppService;
using winrt::Windows::Foundation::AsyncStatus;
using winrt::Windows::Foundation::IAsyncAction;

namespace
{

// An operation of a command, and the first line that comes after its end.
struct Operation
{
    wchar_t const* fault; // that ends it at once; none for what has ended in any case
    wchar_t const* command;
    wchar_t const* continuationLine;
};

void PrintTo(Operation const& operation, std::ostream* stream)
{
    *stream << testing::PrintToString(operation.command) << " " << testing::PrintToString(operation.continuationLine);
}

class ContinuationThread : public test::ServiceFlow, public testing::WithParamInterface<Operation>
{
};

// The thread is the test's own, which the pool does not use again.
TEST_P(ContinuationThread, IsNotTheOneThatStartedWhatHasEndedAtOnce)
{
    if (GetParam().fault)
    {
        host.SetFault(GetParam().fault);
    }
    std::thread([this] {
        auto const args = winrt::make_self<test::FakeRequestArgs>(winrt::box_value(GetParam().command));
        NotificationAppService::OnRequestReceived(
            nullptr, args.as<winrt::Windows::ApplicationModel::AppService::AppServiceRequestReceivedEventArgs>());
        EXPECT_NE(log->WaitForThreadOf(GetParam().continuationLine), GetCurrentThreadId());
    }).join();
}

constexpr wchar_t channelEnded[] =
    L"PushNotificationChannelManager.CreatePushNotificationChannelForApplicationAsync ended";
constexpr wchar_t sendEnded[] = L"AppServiceConnection.SendMessageAsync ended";

INSTANTIATE_TEST_SUITE_P(Operations, ContinuationThread,
                         testing::Values(Operation{channelEnded, L"GetChannelUri", L"Channel URI Received"},
                                         Operation{channelEnded, L"RegisterBackgroundTask", L"Channel URI Received"},
                                         Operation{sendEnded, L"RegisterBackgroundTask",
                                                   L"Msg sent to WIN32 for background task registration done"},
                                         Operation{sendEnded, L"UnregisterBackgroundTask",
                                                   L"Msg sent to WIN32 for background task unregistration done"},
                                         Operation{nullptr, L"ExitZEB",
                                                   L"Ack sent to VelmoNotificationHelper for exit"}));

IAsyncAction EndedAction()
{
    co_return;
}

TEST(ContinuationThreadDeathTest, EndsTheProcessWhenThePoolTakesNoContinuation)
{
    auto const whenEndedWithoutPool = [] {
        test::SubmitCall const submit([](auto...) {
            SetLastError(ERROR_NOT_ENOUGH_MEMORY);
            return FALSE;
        });
        VelmoNotificationClient::WhenEnded(EndedAction(), [](auto&&...) {});
    };
    EXPECT_EXIT(test::EndsWhenTerminated(whenEndedWithoutPool), testing::ExitedWithCode(test::terminatedCode), "");
}

TEST(ContinuationThreadDeathTest, EndsTheProcessWhenTheContinuationThrows)
{
    auto const whenEndedAndThrown = [] {
        VelmoNotificationClient::WhenEnded(EndedAction(), [](auto&&...) { throw winrt::hresult_error(E_FAIL); });
        Sleep(INFINITE);
    };
    EXPECT_EXIT(test::EndsWhenTerminated(whenEndedAndThrown), testing::ExitedWithCode(test::terminatedCode), "");
}

} // namespace
