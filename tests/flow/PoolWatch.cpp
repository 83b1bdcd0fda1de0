#include "tests/flow/PoolWatch.h"

#include "simulator/testing/LimitedWait.h"

#include <condition_variable>
#include <gtest/gtest.h>
#include <memory>
#include <mutex>

WRAP(SubmitCall, TrySubmitThreadpoolCallback);

namespace test
{

namespace
{

struct Work
{
    PTP_SIMPLE_CALLBACK callback;
    void* context;
};

// Static, since the last work may finish after its watch is destroyed. No atomic wait: this library's may miss a
// notification.
std::mutex mutex; // over the counts
std::condition_variable idle;
int begun = 0;
int unfinished = 0;

void Begin()
{
    std::lock_guard const lock(mutex);
    ++begun;
    ++unfinished;
}

void Finish()
{
    std::lock_guard const lock(mutex);
    if (--unfinished == 0)
    {
        idle.notify_all();
    }
}

void CALLBACK Run(PTP_CALLBACK_INSTANCE instance, void* context)
{
    std::unique_ptr<Work> const work(static_cast<Work*>(context));
    work->callback(instance, work->context);
    Finish();
}

} // namespace

PoolWatch::PoolWatch()
    : m_submit([](auto system, PTP_SIMPLE_CALLBACK callback, void* context, PTP_CALLBACK_ENVIRON environment) {
          auto work = std::make_unique<Work>(callback, context);
          Begin();
          if (!system(Run, work.get(), environment))
          {
              Finish();
              return FALSE;
          }
          static_cast<void>(work.release()); // owned by Run
          return TRUE;
      })
{
}

PoolWatch::Counts PoolWatch::Count()
{
    std::lock_guard const lock(mutex);
    return {begun, unfinished};
}

void PoolWatch::WaitUntilIdle()
{
    std::unique_lock lock(mutex);
    auto const isIdle = [] { return unfinished == 0; };
    if (!idle.wait_for(lock, sim::waitLimit, isIdle))
    {
        ADD_FAILURE() << sim::Missing(L"the end of " + std::to_wstring(unfinished) + L" of " + std::to_wstring(begun) +
                                      L" callbacks on the thread pool")
                             .what();
        idle.wait(lock, isIdle);
    }
}

} // namespace test
