#include "simulator/runtime/ActivationQueue.h"

#include <combaseapi.h>

namespace sim
{

ActivationQueue::ActivationQueue() : m_changed(CreateEventW(nullptr, FALSE, FALSE, nullptr)) {}

void ActivationQueue::Add(Activation activation)
{
    std::lock_guard const lock(m_mutex);
    m_waiting.push_back(std::move(activation));
    SetEvent(m_changed.Get());
}

void ActivationQueue::End()
{
    std::lock_guard const lock(m_mutex);
    m_hasEnded = true;
    SetEvent(m_changed.Get());
}

std::optional<Activation> ActivationQueue::Next()
{
    std::optional<Activation> next;
    while (!TryTake(next))
    {
        auto* const changed = m_changed.Get();
        DWORD index = 0;
        CoWaitForMultipleHandles(COWAIT_DEFAULT, INFINITE, 1, const_cast<HANDLE*>(&changed), &index);
    }
    return next;
}

bool ActivationQueue::TryTake(std::optional<Activation>& next)
{
    std::lock_guard const lock(m_mutex);
    if (!m_hasEnded && !m_waiting.empty())
    {
        next = std::move(m_waiting.front());
        m_waiting.pop_front();
    }
    return m_hasEnded || next;
}

} // namespace sim
