#include "tests/flow/PoolWatch.h"

#include <atomic>
#include <memory>

extern "C"
{
    decltype(&TrySubmitThreadpoolCallback) __wrap___imp_TrySubmitThreadpoolCallback = &test::SubmitCall::Entry;
}

namespace test
{

namespace
{

struct Work
{
    PTP_SIMPLE_CALLBACK callback;
    void* context;
};

std::atomic<int> unfinished = 0; // outlives each watch, which the last work may find gone

void Finish()
{
    if (--unfinished == 0)
    {
        unfinished.notify_all();
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
          ++unfinished;
          if (!system(Run, work.get(), environment))
          {
              Finish();
              return FALSE;
          }
          static_cast<void>(work.release()); // Run has it from here
          return TRUE;
      })
{
}

void PoolWatch::WaitUntilIdle()
{
    for (int count = unfinished; count != 0; count = unfinished)
    {
        unfinished.wait(count);
    }
}

} // namespace test
