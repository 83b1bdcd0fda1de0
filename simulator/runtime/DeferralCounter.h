#pragma once
#include <atomic>
#include <functional>
#include <utility>

namespace sim
{

// Something that ends when its handler has returned and all deferrals that were taken are completed: a request, a
// background task. Any thread.
class DeferralCounter
{
  public:
    // ended: called once, by the last one to finish.
    explicit DeferralCounter(std::function<void()> ended) : m_ended(std::move(ended)) {}

    // A deferral is taken. After the end it changes nothing.
    void Take() noexcept { ++m_unfinished; }

    // A deferral is completed, or the handler has returned.
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

} // namespace sim
