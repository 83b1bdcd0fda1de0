#pragma once
#include "app/App.h"
#include "simulator/testing/LocalDevice.h"
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

// Runs the application in this process, against the simulator's runtime classes. A wait of the app (Sleep) lasts until
// the test ends it.
class AppFlow : public testing::Test
{
  protected:
    AppFlow();
    ~AppFlow() override;

    // What main does, on a thread of its own.
    void Start();

    // Waits until Application::Start has returned or thrown. Throws std::runtime_error when it does neither.
    void WaitForEnd();

    // The same for destructors: fails the test at the time limit and continues to wait.
    void JoinMain();

    // Start and WaitForEnd, for an app that does not wait.
    void RunToEnd();

    // The next launch of the desktop component, once the app has set its handler of the launch's end: its UI thread has
    // come back from the activation, or is in its wait.
    sim::LocalDevice::Launched WaitForLaunch();

    // Ends the current or next wait of the app.
    void EndWait() { ReleaseSemaphore(m_waitMayEnd.Get(), 1, nullptr); }

    // The messages in the log, in order. A level other than INFO and a category other than the shell's are shown with
    // the message.
    std::vector<std::wstring> Messages() const;

    // The number of reports of that kind from the device.
    std::size_t CountReports(std::wstring_view kind);

    std::wstring LogPath() const { return temporary / L"Tessaline\\HOV\\KZEB.log"; }

    UserTemporaryFolder temporary;
    PoolWatch pool; // outlives the work on it
    sim::LocalDevice host;
    std::vector<DWORD> waits;     // what the app waited for, in milliseconds
    std::int32_t startResult = 0; // the HRESULT with which Application::Start failed
    winrt::weak_ref<VelmoNotificationClient::App> app;

  private:
    // Waits until Application::Start has returned or thrown; false at the time limit.
    bool TryWaitForEnd() const;
    std::runtime_error EndIsMissing() const;

    LogTearDown m_logTearDown;
    zant::UniqueHandle m_ended;   // signalled when Application::Start has returned or thrown
    zant::UniqueHandle m_waiting; // signalled from the app's first wait on
    zant::UniqueHandle m_waitMayEnd;
    SleepCall m_sleep;
    std::thread m_main;
};

} // namespace test
