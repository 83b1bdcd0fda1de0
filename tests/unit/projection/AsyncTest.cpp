#include "tests/unit/projection/TestOperation.h"
#include "tests/unit/projection/WrappedRuntime.h"

#include <gtest/gtest.h>
#include <thread>
#include <windows.h>

using namespace test;
using namespace winrt;
using namespace Windows::Foundation;

// Coroutines that are asynchronous operations: what their callers see.

namespace
{

IAsyncAction Waits(IAsyncAction other, Alive = {})
{
    co_await resume_agile(other);
}

IAsyncAction EndsAtOnce()
{
    co_return;
}

IAsyncAction Fails()
{
    co_await std::suspend_never{};
    throw hresult_access_denied(L"not you");
}

IAsyncOperation<hstring> Gives(IAsyncAction other, hstring text, Alive = {})
{
    co_await resume_agile(other);
    co_return text;
}

IAsyncOperation<int32_t> GivesANumber()
{
    co_return 7;
}

IAsyncAction TellsItsCancellation(IAsyncAction other, bool& told)
{
    auto const token = co_await get_cancellation_token();
    token.callback([&] { told = true; });
    EXPECT_FALSE(token());
    co_await resume_agile(other);
    EXPECT_TRUE(token());
    co_await std::suspend_never{}; // ends here
    ADD_FAILURE() << "continues although it was canceled";
}

struct Recorder
{
    int calls = 0;
    AsyncStatus status{};

    AsyncActionCompletedHandler Handler()
    {
        return [this](auto&&, AsyncStatus value) {
            ++calls;
            status = value;
        };
    }
};

} // namespace

TEST(AsyncCoroutine, CallsItsHandlerOnceWhenItEnds)
{
    auto const other = make_self<TestAction>();
    auto const action = Waits(*other);
    Recorder recorder;
    action.Completed(recorder.Handler());
    EXPECT_EQ(action.Status(), AsyncStatus::Started);
    EXPECT_EQ(recorder.calls, 0);
    other->End(AsyncStatus::Completed);
    EXPECT_EQ(action.Status(), AsyncStatus::Completed);
    EXPECT_EQ(recorder.calls, 1);
    EXPECT_EQ(recorder.status, AsyncStatus::Completed);
    EXPECT_NO_THROW(action.GetResults());
}

TEST(AsyncCoroutine, CallsItsHandlerAtOnceWhenItHasEnded)
{
    auto const action = EndsAtOnce();
    Recorder recorder;
    action.Completed(recorder.Handler());
    EXPECT_EQ(recorder.calls, 1);
    EXPECT_EQ(recorder.status, AsyncStatus::Completed);
}

TEST(AsyncCoroutine, TakesOneHandlerOnly)
{
    auto const other = make_self<TestAction>();
    auto const action = Waits(*other);
    Recorder recorder;
    action.Completed(recorder.Handler());
    EXPECT_THROW(action.Completed(recorder.Handler()), hresult_illegal_delegate_assignment);
    other->End(AsyncStatus::Completed);
    EXPECT_THROW(action.Completed(recorder.Handler()), hresult_illegal_delegate_assignment);
    EXPECT_EQ(recorder.calls, 1);
}

TEST(AsyncCoroutine, GivesItsHandlerBackUntilItEnds)
{
    auto const other = make_self<TestAction>();
    auto const action = Waits(*other);
    EXPECT_FALSE(action.Completed());
    Recorder recorder;
    auto const handler = recorder.Handler();
    action.Completed(handler);
    EXPECT_EQ(action.Completed(), handler);
    other->End(AsyncStatus::Completed);
    EXPECT_FALSE(action.Completed());
}

TEST(AsyncCoroutine, AHandlersFailureNeverReachesTheSource)
{
    auto const other = make_self<TestAction>();
    auto const action = Waits(*other);
    action.Completed([](auto&&, auto&&) { throw hresult_access_denied(); });
    EXPECT_NO_THROW(other->End(AsyncStatus::Completed));
    EXPECT_EQ(action.Status(), AsyncStatus::Completed);
    EXPECT_NO_THROW(EndsAtOnce().Completed([](auto&&, auto&&) { throw hresult_access_denied(); }));
}

TEST(AsyncCoroutine, HandlersAreCalledOutsideItsLock)
{
    auto const other = make_self<TestAction>();
    auto const action = Waits(*other);
    auto status = AsyncStatus::Started;
    action.Completed([&](IAsyncAction const& sender, auto&&) {
        status = sender.Status();
        sender.GetResults();
        EXPECT_EQ(sender.ErrorCode(), S_OK);
        EXPECT_THROW(sender.Completed(nullptr), hresult_illegal_delegate_assignment);
    });
    other->End(AsyncStatus::Completed);
    EXPECT_EQ(status, AsyncStatus::Completed);
}

TEST(AsyncCoroutine, HasNoResultsBeforeItEnds)
{
    auto const other = make_self<TestAction>();
    EXPECT_THROW(Waits(*other).GetResults(), hresult_illegal_method_call);
    auto const operation = Gives(*other, L"text");
    EXPECT_THROW(operation.GetResults(), hresult_illegal_method_call);
    other->End(AsyncStatus::Completed);
}

TEST(AsyncCoroutine, GivesItsResultMoreThanOnce)
{
    auto const other = make_self<TestAction>();
    auto const operation = Gives(*other, L"text");
    other->End(AsyncStatus::Completed);
    EXPECT_EQ(operation.GetResults(), L"text");
    EXPECT_EQ(operation.GetResults(), L"text");
    EXPECT_EQ(GivesANumber().GetResults(), 7);
}

TEST(AsyncCoroutine, AnExceptionIsItsError)
{
    auto const action = Fails();
    Recorder recorder;
    action.Completed(recorder.Handler());
    EXPECT_EQ(recorder.status, AsyncStatus::Error);
    EXPECT_EQ(action.Status(), AsyncStatus::Error);
    EXPECT_EQ(action.ErrorCode(), E_ACCESSDENIED);
    EXPECT_THROW(action.GetResults(), hresult_access_denied);
}

TEST(AsyncCoroutine, AnErrorPassesThroughTheOneThatWaitsForIt)
{
    auto const other = make_self<TestAction>();
    auto const operation = Gives(*other, L"text");
    constexpr auto notFound = static_cast<int32_t>(0x80070490);
    other->End(AsyncStatus::Error, notFound);
    EXPECT_EQ(operation.Status(), AsyncStatus::Error);
    EXPECT_EQ(operation.ErrorCode(), notFound);
}

TEST(AsyncCoroutine, EndsCanceledAtItsNextWait)
{
    auto const other = make_self<TestAction>();
    bool told = false;
    auto const action = TellsItsCancellation(*other, told);
    Recorder recorder;
    action.Completed(recorder.Handler());
    action.Cancel();
    EXPECT_TRUE(told);
    EXPECT_EQ(action.Status(), AsyncStatus::Canceled);
    EXPECT_EQ(recorder.calls, 0);
    EXPECT_THROW(action.GetResults(), hresult_illegal_method_call);
    other->End(AsyncStatus::Completed);
    EXPECT_EQ(recorder.calls, 1);
    EXPECT_EQ(recorder.status, AsyncStatus::Canceled);
    EXPECT_THROW(action.GetResults(), hresult_canceled);
    EXPECT_EQ(action.ErrorCode(), hresult_canceled().code());
}

TEST(AsyncCoroutine, TellsACancellationOnce)
{
    auto const other = make_self<TestAction>();
    bool told = false;
    auto const action = TellsItsCancellation(*other, told);
    action.Cancel();
    told = false;
    action.Cancel();
    EXPECT_FALSE(told);
    other->End(AsyncStatus::Completed);
}

TEST(AsyncCoroutine, CancelingAfterTheEndChangesNothing)
{
    auto const action = EndsAtOnce();
    action.Cancel();
    EXPECT_EQ(action.Status(), AsyncStatus::Completed);
    EXPECT_NO_THROW(action.GetResults());
}

TEST(AsyncCoroutine, ItsFrameIsFreedWithItsLastReference)
{
    auto const before = Alive::Count();
    {
        auto const other = make_self<TestAction>();
        auto operation = Gives(*other, L"text");
        EXPECT_GT(Alive::Count(), before + 1);
        other->End(AsyncStatus::Completed);
        EXPECT_EQ(operation.GetResults(), L"text");
        operation = nullptr;
        EXPECT_EQ(Alive::Count(), before + 1);
    }
    EXPECT_EQ(Alive::Count(), before);
}

TEST(AsyncCoroutine, GoesOnWhenNobodyHoldsIt)
{
    auto const before = Alive::Count();
    auto other = make_self<TestAction>();
    Waits(*other);
    EXPECT_GT(Alive::Count(), before + 1);
    other->End(AsyncStatus::Completed);
    EXPECT_EQ(Alive::Count(), before + 1);
}

TEST(AsyncCoroutine, AnswersAsItsOperation)
{
    auto const action = EndsAtOnce();
    EXPECT_EQ(action.as<IAsyncInfo>().Id(), 1u);
    EXPECT_EQ(get_class_name(action), L"Windows.Foundation.IAsyncAction");
    EXPECT_EQ(get_class_name(GivesANumber()), L"Windows.Foundation.IAsyncOperation`1<Int32>");
    EXPECT_TRUE(make_weak(action).get());
    EXPECT_NO_THROW(action.Close());
}

TEST(AsyncCoroutine, RacesBetweenItsEndAndItsHandlerCallOnce)
{
    for (int round = 0; round < 300; ++round)
    {
        auto const other = make_self<TestAction>();
        auto const action = Waits(*other);
        std::atomic<int> calls = 0;
        std::thread ends([&] { other->End(AsyncStatus::Completed); });
        action.Completed([&](auto&&, auto&&) { ++calls; });
        ends.join();
        EXPECT_EQ(calls, 1);
    }
}

TEST(AsyncWait, GetBlocksUntilTheEnd)
{
    auto const other = make_self<TestAction>();
    auto const operation = Gives(*other, L"text");
    std::thread ends([&] { other->End(AsyncStatus::Completed); });
    EXPECT_EQ(operation.get(), L"text");
    ends.join();
    EXPECT_EQ(operation.get(), L"text");
}

TEST(AsyncWait, GetRaisesTheError)
{
    EXPECT_THROW(Fails().get(), hresult_access_denied);
}

TEST(AsyncWait, WaitingForATimeTellsHowItStands)
{
    auto const other = make_self<TestAction>();
    EXPECT_EQ(Waits(*other).wait_for(std::chrono::milliseconds(1)), AsyncStatus::Started);
    other->End(AsyncStatus::Completed);
    EXPECT_EQ(EndsAtOnce().wait_for(std::chrono::milliseconds(1)), AsyncStatus::Completed);
    EXPECT_EQ(Fails().wait_for(std::chrono::milliseconds(1)), AsyncStatus::Error);
}

TEST(AsyncWait, WithoutAnEventToWaitOnItIsRaised)
{
    auto const other = make_self<TestAction>();
    auto const action = Waits(*other);
    {
        CreateEventCall const fails([](auto, auto, auto, auto, auto) -> HANDLE {
            SetLastError(ERROR_NO_SYSTEM_RESOURCES);
            return nullptr;
        });
        EXPECT_THROW(action.get(), hresult_error);
    }
    other->End(AsyncStatus::Completed);
    EXPECT_NO_THROW(action.get());
}
