#pragma once
#include "app/App.h"
#include "simulator/runtime/LocalHost.h"
#include "tests/flow/PoolWatch.h"
#include "tests/support/ExpectLines.h"
#include "tests/support/LogTearDown.h"
#include "tests/support/UserTemporaryFolder.h"
#include "tests/support/WrappedSystem.h"
#include "utils/UniqueHandle.h"

#include <gtest/gtest.h>
#include <thread>
#include <windows.h>

namespace test
{

// The application in this process, against the simulator's runtime classes. Its waits are not slept through: each one
// lasts until the test ends it.
class AppFlow : public testing::Test
{
  protected:
    explicit AppFlow(sim::Limits limits = {});
    ~AppFlow() override;

    // What main does, on a thread of its own.
    void Start();

    // Waits until Application::Start has returned, or thrown. Throws std::runtime_error when it does neither.
    void WaitForEnd();

    // The same for destructors: fails the test when that takes too long, and goes on waiting.
    void JoinMain();

    // The process as a whole, for an app that waits for nothing.
    void RunToEnd();

    // Ends the wait that the app is in, or is about to begin.
    void EndWait() { ReleaseSemaphore(m_waitMayEnd.Get(), 1, nullptr); }

    // The messages in the log, in order. What is not at INFO, or not of the shell's category, is shown with it.
    std::vector<std::wstring> Messages() const;

    // How often the device reported that.
    std::size_t CountReports(std::wstring_view kind) const;

    std::wstring LogPath() const { return temporary / L"Tessaline\\HOV\\KZEB.log"; }

    UserTemporaryFolder temporary;
    PoolWatch pool; // outlives what runs on it
    sim::LocalHost host;
    std::vector<DWORD> waits;     // what the app waited for, in milliseconds
    std::int32_t startResult = 0; // how Application::Start failed
    winrt::weak_ref<VelmoNotificationClient::App> app;

  private:
    // Whether Application::Start returns, or throws, in time.
    bool TryWaitForEnd() const;
    std::runtime_error EndIsMissing() const;

    LogTearDown m_logTearDown;
    zant::UniqueHandle m_ended; // signalled when Application::Start has returned, or thrown
    zant::UniqueHandle m_waitMayEnd;
    SleepCall m_sleep;
    std::thread m_main;
};

} // namespace test
