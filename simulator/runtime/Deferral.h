#pragma once
#include "simulator/runtime/Runtime.h"

#include <atomic>
#include <functional>
#include <memory>
#include <utility>
#include <winrt/base.h>

namespace sim
{

// A deferral. Releasing it does not complete it.
template <typename Class>
struct Deferral : winrt::implements<Deferral<Class>, winrt::default_interface<Class>>
{
    using class_type = Class;

    // completed: called at each completion; only the first one counts.
    explicit Deferral(std::function<void(bool isFirst)> completed) : m_completed(std::move(completed)) {}

    void Complete()
    {
        InjectFault(CallOf<Class>(L"Complete"));
        m_completed(!m_isCompleted.exchange(true));
    }

  private:
    std::function<void(bool isFirst)> const m_completed;
    std::atomic<bool> m_isCompleted = false;
};

// Something that ends when its handler has returned and all deferrals that were taken are completed: a request, a
// background task. Any thread.
class DeferralCounter
{
  public:
    // ended: called once, by the last one to finish.
    explicit DeferralCounter(std::function<void()> ended) : m_ended(std::move(ended)) {}

    // Counts a deferral that is taken. Does nothing after the end.
    void Take() noexcept { ++m_unfinished; }

    // Counts a deferral that is completed, or the return of the handler.
    void Finish()
    {
        if (--m_unfinished == 0 && !m_hasEnded.exchange(true))
        {
            m_ended();
        }
    }

  private:
    std::function<void()> const m_ended;
    std::atomic<std::size_t> m_unfinished = 1; // the handler itself
    std::atomic<bool> m_hasEnded = false;
};

// A deferral of what the counter counts.
template <typename Class>
Class TakeDeferral(std::shared_ptr<DeferralCounter> const& counter)
{
    counter->Take();
    return winrt::make<Deferral<Class>>([counter](bool isFirst) {
        if (isFirst)
        {
            counter->Finish();
        }
    });
}

} // namespace sim
