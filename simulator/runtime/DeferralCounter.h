#pragma once
#include <functional>
#include <memory>
#include <mutex>

namespace sim
{

// Something that ends when its handler has returned and all deferrals that were taken are completed: a request, a
// background task. May be used from any thread.
class DeferralCounter
{
  public:
    // ended: called once, by the last one to finish.
    explicit DeferralCounter(std::function<void()> ended) : m_ended(std::move(ended)) {}

    // A deferral is taken. One that comes when all is over changes nothing any more.
    void Take();

    // A deferral is completed, or the handler has returned.
    void Finish();

  private:
    std::mutex m_mutex;           // over all that follows
    std::size_t m_unfinished = 1; // the handler itself
    std::function<void()> m_ended;
};

} // namespace sim
