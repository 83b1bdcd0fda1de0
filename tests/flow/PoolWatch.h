#pragma once
#include "tests/support/WrappedSystem.h"

#include <windows.h>

namespace test
{

// Tracks all work of this process on the system's thread pool while it exists, also the application's continuations,
// which the platform does not track, so that tests can wait for it.
class PoolWatch
{
  public:
    PoolWatch();
    PoolWatch(PoolWatch const&) = delete;
    PoolWatch& operator=(PoolWatch const&) = delete;
    ~PoolWatch() { WaitUntilIdle(); }

    // How much work has been queued so far, and how much of it has not ended.
    struct Counts
    {
        int begun;
        int unfinished;
    };
    static Counts Count();

    // Waits until no work runs or is queued there. Fails the test at the time limit and continues to wait, since the
    // work may use what the caller is about to destroy. The watchdog ends a program that hangs here.
    static void WaitUntilIdle();

  private:
    SubmitCall m_submit;
};

} // namespace test
