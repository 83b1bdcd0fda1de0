#pragma once
#include "simulator/platform/TimeSource.h"

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <map>
#include <mutex>

namespace sim
{

// Everything that happens on a device, one thing after the other: what processes say, their ends, the limits that run
// out. What runs here needs no lock. A thread runs it, or a test takes it step by step.
class Dispatcher
{
  public:
    using Work = std::function<void()>;

    // 0 is none.
    using TimerId = std::uint64_t;

    // What work has thrown.
    using Failed = std::function<void(std::exception const&)>;

    // time: outlives this. failed: called where the work ran, instead of what would run on.
    Dispatcher(TimeSource const& time, Failed failed) : m_time(time), m_failed(std::move(failed)) {}

    Dispatcher(Dispatcher const&) = delete;
    Dispatcher& operator=(Dispatcher const&) = delete;
    ~Dispatcher() = default;

    // Behind all that was posted before. From any thread; never blocks.
    void Post(Work work);

    // Posts the work and waits until it has run. From any thread but the one that runs this.
    void PostAndWait(Work const& work);

    // The work runs once the time is over, unless it is cancelled before. From within work.
    TimerId SetTimer(unsigned milliseconds, Work work);

    // Nothing for a timer that has run, or for 0. From within work.
    void CancelTimer(TimerId id);

    // Runs the next work that is due, a timer's before what was posted. False when there is none.
    bool Step();

    // Runs all work as it comes, until Stop.
    void Run();

    // Run returns after the work that it is at; what still waits never runs. From any thread.
    void Stop();

    // The time source has another time.
    void TimeChanged();

    // Returns when nothing is due and nothing runs. Gives how much has been posted until then.
    std::uint64_t WaitUntilIdle();

  private:
    struct Timer
    {
        std::uint64_t due;
        Work work;
    };

    using Timers = std::map<TimerId, Timer>;

    void Do(Work const& work) const;

    // With the lock held.
    Work TakeDue();
    bool IsDue(std::uint64_t now); // whether there is work
    bool IsTimerDue(std::uint64_t now);
    Timers::iterator Next(); // the earliest timer

    TimeSource const& m_time;
    Failed const m_failed;
    std::mutex m_mutex; // over all that follows
    std::condition_variable m_changed;
    std::deque<Work> m_posted;
    Timers m_timers;
    TimerId m_lastTimer = 0;
    std::uint64_t m_postCount = 0;
    bool m_isRunningWork = false;
    bool m_isStopped = false;
};

} // namespace sim
