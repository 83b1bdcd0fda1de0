#include "simulator/runtime/appservice/PendingRequest.h"

namespace sim
{

PendingRequest::PendingRequest(std::uint32_t number, bool isServed)
    : m_number(number), m_isServed(isServed), m_end([host = m_host, number] { host.Tell(RequestCompleted{number}); })
{
}

void PendingRequest::HandlersReturned()
{
    if (m_waitsForHandlers.exchange(false))
    {
        m_end.Finish();
    }
}

void PendingRequest::DeferralTaken()
{
    m_end.Take();
    HandlersReturned(); // from here on they do not count
    if (auto const host = m_isServed ? m_host.Get() : nullptr)
    {
        host->DeferralTaken(m_number);
    }
}

void PendingRequest::DeferralCompleted(bool again)
{
    if (auto const host = m_isServed ? m_host.Get() : nullptr)
    {
        host->DeferralCompleted(m_number);
    }
    if (!again)
    {
        m_end.Finish();
    }
}

} // namespace sim
