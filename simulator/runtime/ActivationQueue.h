#pragma once
#include "simulator/base/Handle.h"
#include "simulator/protocol/Activation.h"

#include <combaseapi.h>
#include <deque>
#include <mutex>
#include <optional>

namespace sim
{

// The activations that wait for the UI thread.
class ActivationQueue
{
  public:
    void Add(Activation activation)
    {
        std::lock_guard const lock(m_mutex);
        m_waiting.push_back(std::move(activation));
        SetEvent(m_changed.Get());
    }

    // Next gives nothing from now on, whatever still waits.
    void End()
    {
        std::lock_guard const lock(m_mutex);
        m_hasEnded = true;
        SetEvent(m_changed.Get());
    }

    // Waits, serving calls to the thread's apartment. For one thread.
    std::optional<Activation> Next()
    {
        std::unique_lock lock(m_mutex);
        SetEvent(m_idle.Get());
        while (!m_hasEnded && m_waiting.empty())
        {
            lock.unlock();
            HANDLE changed = m_changed.Get();
            DWORD index = 0;
            CoWaitForMultipleHandles(COWAIT_DEFAULT, INFINITE, 1, &changed, &index);
            lock.lock();
        }
        if (m_hasEnded)
        {
            return std::nullopt;
        }
        auto next = std::move(m_waiting.front());
        m_waiting.pop_front();
        ResetEvent(m_idle.Get());
        return next;
    }

    // Signalled while that thread is at no activation: it has come back to Next from the last one.
    HANDLE Idle() const noexcept { return m_idle.Get(); }

  private:
    Handle m_changed{CreateEventW(nullptr, FALSE, FALSE, nullptr)};
    Handle m_idle{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    std::mutex m_mutex; // over all that follows
    std::deque<Activation> m_waiting;
    bool m_hasEnded = false;
};

} // namespace sim
