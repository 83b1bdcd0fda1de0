#pragma once
#include "utils/UniqueHandle.h"

#include <gtest/gtest.h>
#include <string>

namespace test
{

// Another program of the test, started from the folder of the test program; ended with the object if it still runs.
class ChildProcess
{
  public:
    // `arguments` follow the program's name in its command line.
    ChildProcess(std::wstring const& program, std::wstring const& arguments);
    ChildProcess(ChildProcess&&) noexcept = default;
    ChildProcess& operator=(ChildProcess&&) = delete;
    ~ChildProcess();

    // Waits until the process signals an event of the caller's. A process that ends before, or takes too long, is told.
    testing::AssertionResult AwaitSignal(HANDLE event) const;

    // Ends the process at once, as a crash does, and waits until it is gone.
    void Kill();

    // Waits until the process ends by itself; its exit code.
    DWORD ExitCode();

  private:
    std::wstring m_commandLine;
    zant::UniqueHandle m_process;
};

} // namespace test
