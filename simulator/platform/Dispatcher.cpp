#include "simulator/platform/Dispatcher.h"

#include <chrono>
#include <utility>

namespace sim
{

void Dispatcher::Post(Work work)
{
    std::lock_guard const lock(m_mutex);
    m_posted.push_back(std::move(work));
    ++m_postCount;
    m_changed.notify_all();
}

void Dispatcher::PostAndWait(Work const& work)
{
    std::mutex mutex;
    std::condition_variable ended;
    bool hasEnded = false;
    Post([&] {
        Execute(work);
        std::lock_guard const lock(mutex);
        hasEnded = true;
        ended.notify_all();
    });
    std::unique_lock lock(mutex);
    ended.wait(lock, [&] { return hasEnded; });
}

Dispatcher::TimerId Dispatcher::SetTimer(unsigned milliseconds, Work work)
{
    std::lock_guard const lock(m_mutex);
    TimerId const id{m_time.Ticks() + milliseconds, ++m_lastTimer};
    m_timers.emplace(id, std::move(work));
    return id;
}

void Dispatcher::CancelTimer(TimerId id)
{
    std::lock_guard const lock(m_mutex);
    m_timers.erase(id);
}

bool Dispatcher::Step()
{
    Work work;
    {
        std::lock_guard const lock(m_mutex);
        work = TakeDue();
        m_isRunningWork = work != nullptr;
    }
    if (!work)
    {
        return false;
    }
    Execute(work);
    work = nullptr; // releases what it holds before it counts as ended
    std::lock_guard const lock(m_mutex);
    m_isRunningWork = false;
    m_changed.notify_all();
    return true;
}

void Dispatcher::Run()
{
    for (;;)
    {
        while (Step())
        {
        }
        std::unique_lock lock(m_mutex);
        if (m_isStopped)
        {
            return;
        }
        auto const now = m_time.Ticks();
        if (IsDue(now))
        {
            continue;
        }
        m_timers.empty() ? m_changed.wait(lock)
                         : static_cast<void>(m_changed.wait_for(
                               lock, std::chrono::milliseconds(m_timers.begin()->first.first - now)));
    }
}

void Dispatcher::Stop()
{
    std::lock_guard const lock(m_mutex);
    m_isStopped = true;
    m_changed.notify_all();
}

void Dispatcher::TimeChanged()
{
    std::lock_guard const lock(m_mutex);
    m_changed.notify_all();
}

std::uint64_t Dispatcher::WaitUntilIdle()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return m_isStopped || (!m_isRunningWork && !IsDue(m_time.Ticks())); });
    return m_postCount;
}

void Dispatcher::Execute(Work const& work) const
try
{
    work();
}
catch (std::exception const& error)
{
    m_onError(error);
}

Dispatcher::Work Dispatcher::TakeDue()
{
    if (m_isStopped)
    {
        return nullptr;
    }
    if (IsTimerDue(m_time.Ticks()))
    {
        auto work = std::move(m_timers.begin()->second);
        m_timers.erase(m_timers.begin());
        return work;
    }
    if (m_posted.empty())
    {
        return nullptr;
    }
    auto work = std::move(m_posted.front());
    m_posted.pop_front();
    return work;
}

bool Dispatcher::IsDue(std::uint64_t now) const
{
    return !m_posted.empty() || IsTimerDue(now);
}

bool Dispatcher::IsTimerDue(std::uint64_t now) const
{
    return !m_timers.empty() && m_timers.begin()->first.first <= now;
}

} // namespace sim
