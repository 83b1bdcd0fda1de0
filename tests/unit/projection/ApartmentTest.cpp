#include "tests/unit/projection/TestOperation.h"
#include "tests/unit/projection/WrappedRuntime.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>
#include <windows.h>

using namespace test;
using namespace winrt;
using namespace Windows::Foundation;

// Where a coroutine goes on that waits in a single-threaded apartment. Wine has no context callbacks, so that the
// apartment's context is one of these tests' own.

namespace
{

// It lives until the last one lets go of it: a thread of the pool still leaves it when the test has seen its end.
class TestContext final : public impl::IContextCallback
{
  public:
    int32_t __stdcall QueryInterface(guid const& id, void** object) noexcept override
    {
        *object = is_guid_of<impl::IContextCallback>(id) ? this : nullptr;
        if (!*object)
        {
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    uint32_t __stdcall AddRef() noexcept override { return ++m_references; }
    uint32_t __stdcall Release() noexcept override
    {
        auto const left = --m_references;
        if (left == 0)
        {
            delete this;
        }
        return left;
    }

    int32_t __stdcall ContextCallback(int32_t(__stdcall* callback)(impl::context_call_data*),
                                      impl::context_call_data* data, guid const& id, int, void*) noexcept override
    {
        asked = id;
        if (failure < 0)
        {
            return failure;
        }
        ++entered;
        isInside = true;
        auto const result = callback(data);
        isInside = false;
        return result;
    }

    int32_t failure = 0;
    int entered = 0;
    guid asked{};
    bool isInside = false;

  private:
    std::atomic<uint32_t> m_references = 1;
};

com_ptr<TestContext> MakeContext()
{
    return {new TestContext, take_ownership_from_abi};
}

struct Seen
{
    bool inside = false;
    DWORD thread = 0;
    hresult code{};
    Signal resumed;

    // The coroutine's last step: the test may end with it, so that the coroutine keeps no object beyond it.
    void Resumed(TestContext const& context)
    {
        inside = context.isInside;
        thread = GetCurrentThreadId();
        resumed.Set();
    }
};

fire_and_forget Await(IAsyncAction operation, TestContext const& context, Seen& seen)
{
    try
    {
        co_await operation;
    }
    catch (...)
    {
        seen.code = to_hresult();
    }
    operation = nullptr;
    seen.Resumed(context);
}

fire_and_forget AwaitAgile(IAsyncAction operation, TestContext const& context, Seen& seen)
{
    co_await resume_agile(operation);
    operation = nullptr;
    seen.Resumed(context);
}

fire_and_forget LeaveAndReturn(TestContext const& context, Seen& seen)
{
    try
    {
        apartment_context const origin;
        co_await resume_background();
        co_await apartment_context(origin);
    }
    catch (...)
    {
        seen.code = to_hresult();
    }
    seen.Resumed(context);
}

// The thread of the test is a single-threaded apartment with a context of its own; other threads have none.
class ApartmentSingleThreaded : public testing::Test
{
  protected:
    ApartmentSingleThreaded() { init_apartment(apartment_type::single_threaded); }
    ~ApartmentSingleThreaded() override { uninit_apartment(); }

    void EndOnAnotherThread(DWORD* thread = nullptr)
    {
        std::thread([&] {
            if (thread)
            {
                *thread = GetCurrentThreadId();
            }
            operation->End(AsyncStatus::Completed);
        }).join();
    }

    DWORD const home = GetCurrentThreadId();
    com_ptr<TestContext> const context = MakeContext();
    GetObjectContextCall const contexts{[this](auto, guid const& id, void** result) -> int32_t {
        if (GetCurrentThreadId() != home)
        {
            *result = nullptr;
            return CO_E_NOTINITIALIZED;
        }
        return context->QueryInterface(id, result);
    }};
    com_ptr<TestAction> operation = make_self<TestAction>();
    Seen seen;
};

} // namespace

TEST_F(ApartmentSingleThreaded, WaitingReturnsToIt)
{
    Await(*operation, *context, seen);
    EndOnAnotherThread();
    ASSERT_TRUE(seen.resumed.IsSet());
    EXPECT_TRUE(seen.inside);
    EXPECT_EQ(context->entered, 1);
    EXPECT_EQ(seen.code, S_OK);
}

TEST_F(ApartmentSingleThreaded, ItIsNotReenteredMeanwhile)
{
    Await(*operation, *context, seen);
    EndOnAnotherThread();
    EXPECT_EQ(context->asked, guid("0A299774-3E4E-FC42-1D9D-72CEE105CA57"));
}

TEST_F(ApartmentSingleThreaded, AnEndOnItsOwnThreadNeedsNoReturn)
{
    Await(*operation, *context, seen);
    operation->End(AsyncStatus::Completed);
    ASSERT_TRUE(seen.resumed.IsSet());
    EXPECT_EQ(context->entered, 0);
    EXPECT_EQ(seen.thread, home);
}

TEST_F(ApartmentSingleThreaded, OneThatCannotBeReachedIsRaisedWhereTheOperationEnded)
{
    context->failure = RPC_E_DISCONNECTED;
    Await(*operation, *context, seen);
    EndOnAnotherThread();
    ASSERT_TRUE(seen.resumed.IsSet());
    EXPECT_NE(seen.thread, home);
    EXPECT_EQ(seen.code, RPC_E_DISCONNECTED);
}

TEST_F(ApartmentSingleThreaded, AgileWaitingGoesOnWhereTheOperationEndedWhileTheApartmentIsBlocked)
{
    DWORD ended = 0;
    AwaitAgile(*operation, *context, seen);
    EndOnAnotherThread(&ended); // this thread is blocked in it
    ASSERT_TRUE(seen.resumed.IsSet());
    EXPECT_EQ(seen.thread, ended);
    EXPECT_EQ(context->entered, 0);
    EXPECT_FALSE(seen.inside);
}

TEST_F(ApartmentSingleThreaded, AContextMadeInItLeadsBackToIt)
{
    LeaveAndReturn(*context, seen);
    ASSERT_TRUE(seen.resumed.Wait());
    EXPECT_TRUE(seen.inside);
    EXPECT_EQ(context->entered, 1);
}

TEST_F(ApartmentSingleThreaded, AContextThatCannotBeReachedIsRaised)
{
    context->failure = RPC_E_SERVER_DIED;
    LeaveAndReturn(*context, seen);
    ASSERT_TRUE(seen.resumed.Wait());
    EXPECT_EQ(seen.code, RPC_E_SERVER_DIED);
}

TEST(ApartmentMultiThreaded, WaitingGoesOnWhereTheOperationEnded)
{
    std::thread([] {
        init_apartment();
        auto const context = MakeContext();
        Seen seen;
        auto const operation = make_self<TestAction>();
        Await(*operation, *context, seen);
        DWORD ended = 0;
        std::thread([&] {
            init_apartment();
            ended = GetCurrentThreadId();
            operation->End(AsyncStatus::Completed);
            uninit_apartment();
        }).join();
        EXPECT_TRUE(seen.resumed.IsSet());
        EXPECT_EQ(seen.thread, ended);
        uninit_apartment();
    }).join();
}

TEST(ApartmentMultiThreaded, WaitingLeavesASingleThreadedApartmentThatEndedTheOperation)
{
    std::thread([] {
        init_apartment();
        auto const context = MakeContext();
        Seen seen;
        auto const operation = make_self<TestAction>();
        Await(*operation, *context, seen);
        DWORD ended = 0;
        std::thread([&] {
            init_apartment(apartment_type::single_threaded);
            ended = GetCurrentThreadId();
            operation->End(AsyncStatus::Completed);
            uninit_apartment();
        }).join();
        EXPECT_TRUE(seen.resumed.Wait());
        EXPECT_NE(seen.thread, ended);
        uninit_apartment();
    }).join();
}

TEST(ApartmentMultiThreaded, WithoutAPoolWaitingRaisesWhereTheOperationEnded)
{
    std::thread([] {
        init_apartment();
        auto const context = MakeContext();
        Seen seen;
        auto const operation = make_self<TestAction>();
        Await(*operation, *context, seen);
        SubmitCall const fails([](auto, auto, auto, auto) {
            SetLastError(ERROR_NOT_ENOUGH_MEMORY);
            return FALSE;
        });
        std::thread([&] {
            init_apartment(apartment_type::single_threaded);
            operation->End(AsyncStatus::Completed);
            uninit_apartment();
        }).join();
        EXPECT_TRUE(seen.resumed.IsSet());
        EXPECT_EQ(seen.code, HRESULT_FROM_WIN32(ERROR_NOT_ENOUGH_MEMORY));
        uninit_apartment();
    }).join();
}

TEST(Apartment, AChangedModeIsRaised)
{
    std::thread([] {
        init_apartment(apartment_type::single_threaded);
        EXPECT_THROW(init_apartment(apartment_type::multi_threaded), hresult_error);
        uninit_apartment();
    }).join();
}
