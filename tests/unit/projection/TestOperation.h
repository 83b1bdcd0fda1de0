#pragma once
#include "tests/unit/projection/TestPlatform.h"

#include <gtest/gtest.h>
#include <windows.h>
#include <winrt/Windows.Foundation.h>

namespace test
{

// An operation of the platform that a test ends by hand. It keeps nothing of the rules but the handler.
struct TestAction
    : winrt::implements<TestAction, winrt::Windows::Foundation::IAsyncAction, winrt::Windows::Foundation::IAsyncInfo>
{
    using AsyncStatus = winrt::Windows::Foundation::AsyncStatus;
    using Handler = winrt::Windows::Foundation::AsyncActionCompletedHandler;

    void Completed(Handler const& value)
    {
        handler = value;
        if (status != AsyncStatus::Started)
        {
            handler(*this, status);
        }
    }
    Handler Completed() const { return handler; }
    void GetResults() const { winrt::check_hresult(error); }
    uint32_t Id() const noexcept { return 1; }
    AsyncStatus Status() const noexcept { return status; }
    winrt::hresult ErrorCode() const noexcept { return error; }
    void Cancel() const noexcept {}
    void Close() const noexcept {}

    // Ends the operation on the calling thread.
    void End(AsyncStatus how, winrt::hresult code = {})
    {
        status = how;
        error = code;
        if (auto const completed = std::exchange(handler, nullptr))
        {
            completed(*this, how);
        }
    }

    Handler handler;
    AsyncStatus status{AsyncStatus::Started};
    winrt::hresult error;
    Alive alive;
};

// An event of the system that tests wait for instead of sleeping.
class Signal
{
  public:
    void Set() { SetEvent(m_event.get()); }

    testing::AssertionResult Wait() const
    {
        constexpr DWORD limit = 30'000; // shorter than the watchdog's
        return WaitForSingleObject(m_event.get(), limit) == WAIT_OBJECT_0
                   ? testing::AssertionSuccess()
                   : testing::AssertionFailure() << "not signalled after 30 s";
    }

    bool IsSet() const { return WaitForSingleObject(m_event.get(), 0) == WAIT_OBJECT_0; }

  private:
    winrt::handle m_event{winrt::check_pointer(CreateEventW(nullptr, TRUE, FALSE, nullptr))};
};

} // namespace test
