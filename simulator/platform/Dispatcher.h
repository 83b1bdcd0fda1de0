#pragma once
#include "simulator/platform/TimeSource.h"

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <map>
#include <mutex>
#include <utility>

namespace sim
{

// Runs all work of a device in sequence: messages from processes, their ends, expired timers. Work needs no lock. A
// thread runs the dispatcher, or a test steps it.
class Dispatcher
{
  public:
    using Work = std::function<void()>;

    // The time when it is due, and its number; zeros for none.
    using TimerId = std::pair<std::uint64_t, std::uint64_t>;

    // Handles an exception that propagates from work.
    using ErrorHandler = std::function<void(std::exception const&)>;

    // time: outlives this. onError: called on the thread that ran the work.
    Dispatcher(TimeSource const& time, ErrorHandler onError) : m_time(time), m_onError(std::move(onError)) {}

    Dispatcher(Dispatcher const&) = delete;
    Dispatcher& operator=(Dispatcher const&) = delete;
    ~Dispatcher() = default;

    // Queues the work behind all posted work. Any thread; never blocks.
    void Post(Work work);

    // Posts the work and waits until it has run. Any thread except the one that runs this.
    void PostAndWait(Work const& work);

    // Runs the work once, after that time, unless it is cancelled. Called from work.
    TimerId SetTimer(unsigned milliseconds, Work work);

    // Ignores a timer that has expired, and none. Called from work.
    void CancelTimer(TimerId id);

    // Runs the next work: that of an expired timer before posted work. False when there is none.
    bool Step();

    // Runs all work until Stop.
    void Run();

    // Makes Run return after the current work; queued work never runs. Any thread.
    void Stop();

    // The time source's time has changed.
    void TimeChanged();

    // Waits until no work is due or running. Returns how often Post has been called.
    std::uint64_t WaitUntilIdle();

  private:
    void Execute(Work const& work) const;

    // The caller holds the lock.
    Work TakeDue();
    bool IsDue(std::uint64_t now) const; // whether there is work
    bool IsTimerDue(std::uint64_t now) const;

    TimeSource const& m_time;
    ErrorHandler const m_onError;
    std::mutex m_mutex; // over all that follows
    std::condition_variable m_changed;
    std::deque<Work> m_posted;
    std::map<TimerId, Work> m_timers;
    std::uint64_t m_lastTimer = 0;
    std::uint64_t m_postCount = 0;
    bool m_isRunningWork = false;
    bool m_isStopped = false;
};

} // namespace sim
