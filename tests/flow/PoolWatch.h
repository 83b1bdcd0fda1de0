#pragma once
#include "tests/support/WrappedSystem.h"

#include <windows.h>

namespace test
{

// While it lives, all that this process has run on the system's thread pool can be waited for: also the application's
// continuations, which the platform does not know of.
class PoolWatch
{
  public:
    PoolWatch();
    PoolWatch(PoolWatch const&) = delete;
    PoolWatch& operator=(PoolWatch const&) = delete;
    ~PoolWatch() { WaitUntilIdle(); }

    // Until nothing runs there, or waits to run. What takes too long fails the test, and is waited for all the same: it
    // may use what the caller is about to destroy. The watchdog ends a program that hangs here.
    static void WaitUntilIdle();

  private:
    SubmitCall m_submit;
};

} // namespace test
