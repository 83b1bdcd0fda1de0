#pragma once
#include "utils/UniqueHandle.h"

#include <gtest/gtest.h>
#include <string>

namespace test
{

// Waits until the process ends; returns its exit code. After a minute the test fails and names the process, and the
// wait continues; the watchdog ends a program that hangs here.
DWORD AwaitExitCode(HANDLE process, std::wstring const& commandLine);

// A program of the tests, started from the folder of this program. Ended with the object if it still runs.
class ChildProcess
{
  public:
    // `arguments` follow the program in its command line.
    ChildProcess(std::wstring const& program, std::wstring const& arguments);
    ChildProcess(ChildProcess&&) noexcept = default;
    ChildProcess& operator=(ChildProcess&&) = delete;
    ~ChildProcess();

    // Waits until the process signals the event. Fails when the process ends before, and at the time limit.
    testing::AssertionResult AwaitSignal(HANDLE event) const;

    // Ends the process at once, as a crash does, and waits until it has ended.
    void Kill();

    // Stops its threads, as the platform does to an app that is idle; lets them go on.
    void Suspend() const;
    void Resume() const;

    // Waits until the process ends by itself; returns its exit code.
    DWORD ExitCode();

  private:
    std::wstring m_commandLine;
    zant::UniqueHandle m_process;
};

} // namespace test
