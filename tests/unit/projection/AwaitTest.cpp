#include "tests/support/Terminated.h"
#include "tests/unit/projection/TestOperation.h"
#include "tests/unit/projection/WrappedRuntime.h"

#include <gtest/gtest.h>
#include <thread>
#include <windows.h>

using namespace test;
using namespace winrt;
using namespace Windows::Foundation;

// What a coroutine sees of the operation it waits for.

namespace
{

struct Seen
{
    bool resumed = false;
    hresult code{};
    DWORD thread = 0;
};

fire_and_forget Await(IAsyncAction operation, Seen& seen, Alive = {})
{
    try
    {
        co_await operation;
    }
    catch (...)
    {
        seen.code = to_hresult();
    }
    seen.resumed = true;
    seen.thread = GetCurrentThreadId();
}

fire_and_forget AwaitAgile(IAsyncAction operation, Seen& seen, Alive = {})
{
    try
    {
        co_await resume_agile(operation);
    }
    catch (...)
    {
        seen.code = to_hresult();
    }
    seen.resumed = true;
    seen.thread = GetCurrentThreadId();
}

fire_and_forget AwaitMany(std::vector<IAsyncAction> operations, int& done)
{
    for (auto const& operation : operations)
    {
        co_await resume_agile(operation);
        ++done;
    }
}

fire_and_forget GoToThePool(Seen& seen, Signal& signal)
{
    try
    {
        co_await resume_background();
    }
    catch (...)
    {
        seen.code = to_hresult();
    }
    seen.thread = GetCurrentThreadId();
    seen.resumed = true;
    signal.Set();
}

fire_and_forget Throws()
{
    co_await std::suspend_never{};
    throw hresult_access_denied();
}

// Both ways of waiting.
class AwaitBothWays : public testing::TestWithParam<decltype(&Await)>
{
};

} // namespace

INSTANTIATE_TEST_SUITE_P(, AwaitBothWays, testing::Values(&Await, &AwaitAgile));

TEST_P(AwaitBothWays, GoesOnWhenTheOperationEnds)
{
    auto const operation = make_self<TestAction>();
    Seen seen;
    GetParam()(*operation, seen, {});
    EXPECT_FALSE(seen.resumed);
    operation->End(AsyncStatus::Completed);
    EXPECT_TRUE(seen.resumed);
    EXPECT_EQ(seen.code, S_OK);
}

TEST_P(AwaitBothWays, GoesOnAtOnceWhenTheOperationHasEnded)
{
    auto const operation = make_self<TestAction>();
    operation->End(AsyncStatus::Completed);
    Seen seen;
    GetParam()(*operation, seen, {});
    EXPECT_TRUE(seen.resumed);
}

TEST_P(AwaitBothWays, SeesTheError)
{
    auto const operation = make_self<TestAction>();
    Seen seen;
    GetParam()(*operation, seen, {});
    operation->End(AsyncStatus::Error, E_ACCESSDENIED);
    EXPECT_EQ(seen.code, E_ACCESSDENIED);
}

TEST_P(AwaitBothWays, SeesTheCancellation)
{
    auto const operation = make_self<TestAction>();
    Seen seen;
    GetParam()(*operation, seen, {});
    operation->End(AsyncStatus::Canceled);
    EXPECT_EQ(seen.code, hresult_canceled().code());
}

TEST_P(AwaitBothWays, SeesAHandlerThatIsRefused)
{
    struct Refuses : implements<Refuses, IAsyncAction, IAsyncInfo>
    {
        void Completed(AsyncActionCompletedHandler const&) const { throw hresult_illegal_delegate_assignment(); }
        AsyncActionCompletedHandler Completed() const { return nullptr; }
        void GetResults() const noexcept {}
        uint32_t Id() const noexcept { return 1; }
        AsyncStatus Status() const noexcept { return AsyncStatus::Started; }
        hresult ErrorCode() const noexcept { return {}; }
        void Cancel() const noexcept {}
        void Close() const noexcept {}
    };
    auto const before = Alive::Count();
    Seen seen;
    GetParam()(make<Refuses>(), seen, {});
    EXPECT_TRUE(seen.resumed);
    EXPECT_EQ(seen.code, hresult_illegal_delegate_assignment().code());
    EXPECT_EQ(Alive::Count(), before);
}

TEST_P(AwaitBothWays, AnOperationThatIsGivenUpDoesNotHoldTheCoroutineForEver)
{
    auto const before = Alive::Count();
    {
        auto const operation = make_self<TestAction>();
        Seen seen;
        GetParam()(*operation, seen, {});
        operation->handler = nullptr; // as when its process has ended
        EXPECT_TRUE(seen.resumed);
        EXPECT_EQ(seen.code, RPC_E_DISCONNECTED);
    }
    EXPECT_EQ(Alive::Count(), before);
}

TEST_P(AwaitBothWays, FreesTheFrameWhenTheCoroutineEnds)
{
    auto const before = Alive::Count();
    {
        auto const operation = make_self<TestAction>();
        Seen seen;
        GetParam()(*operation, seen, {});
        EXPECT_GT(Alive::Count(), before + 1);
        operation->End(AsyncStatus::Completed);
        EXPECT_EQ(Alive::Count(), before + 1);
    }
    EXPECT_EQ(Alive::Count(), before);
}

TEST_P(AwaitBothWays, KeepsTheOperationWhileItWaits)
{
    auto const before = Alive::Count();
    Seen seen;
    weak_ref<TestAction> weak;
    {
        auto const operation = make_self<TestAction>();
        weak = operation->get_weak();
        GetParam()(*operation, seen, {});
    }
    ASSERT_TRUE(weak.get());
    weak.get()->End(AsyncStatus::Completed);
    EXPECT_TRUE(seen.resumed);
    EXPECT_EQ(Alive::Count(), before);
}

TEST(Await, EndsAndWaitsMayRaceForTheCoroutine)
{
    for (int round = 0; round < 300; ++round)
    {
        auto const operation = make_self<TestAction>();
        std::vector<IAsyncAction> operations;
        int done = 0;
        std::thread ends([&] { operation->End(AsyncStatus::Completed); });
        ends.join();
        operations.emplace_back(*operation);
        AwaitMany(operations, done);
        EXPECT_EQ(done, 1);
    }
}

TEST(Await, ManyOperationsThatHaveEndedDoNotGrowTheStack)
{
    auto const operation = make_self<TestAction>();
    operation->status = AsyncStatus::Completed;
    std::vector<IAsyncAction> const operations(200'000, *operation);
    int done = 0;
    AwaitMany(operations, done);
    EXPECT_EQ(done, 200'000);
}

TEST(AwaitResumeBackground, GoesOnOnThePool)
{
    Seen seen;
    Signal signal;
    GoToThePool(seen, signal);
    ASSERT_TRUE(signal.Wait());
    EXPECT_NE(seen.thread, GetCurrentThreadId());
}

TEST(AwaitResumeBackground, APoolThatIsNotThereIsRaised)
{
    SubmitCall const fails([](auto, auto, auto, auto) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return FALSE;
    });
    Seen seen;
    Signal signal;
    GoToThePool(seen, signal);
    EXPECT_TRUE(seen.resumed);
    EXPECT_EQ(seen.code, HRESULT_FROM_WIN32(ERROR_NOT_ENOUGH_MEMORY));
}

TEST(AwaitFireAndForgetDeathTest, AnExceptionThatLeavesItEndsTheProcess)
{
    EXPECT_EXIT(EndsWhenTerminated([] { Throws(); }), testing::ExitedWithCode(terminatedCode), "");
}
