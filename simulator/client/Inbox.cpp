#include "simulator/client/Inbox.h"

namespace sim
{

Inbox::Inbox() : m_arrived(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {}

void Inbox::Add(Message message)
{
    std::lock_guard const lock(m_mutex);
    m_messages.push_back(std::move(message));
    SetEvent(m_arrived.Get());
}

void Inbox::End()
{
    std::lock_guard const lock(m_mutex);
    m_hasEnded = true;
    SetEvent(m_arrived.Get());
}

std::optional<Message> Inbox::Take()
{
    std::lock_guard const lock(m_mutex);
    if (m_messages.empty())
    {
        return std::nullopt;
    }
    auto message = std::move(m_messages.front());
    m_messages.pop_front();
    if (m_messages.empty() && !m_hasEnded)
    {
        ResetEvent(m_arrived.Get());
    }
    return message;
}

bool Inbox::HasEnded() const
{
    std::lock_guard const lock(m_mutex);
    return m_hasEnded && m_messages.empty();
}

} // namespace sim
