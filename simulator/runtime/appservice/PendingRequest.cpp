#include "simulator/runtime/appservice/PendingRequest.h"

namespace sim
{

PendingRequest::PendingRequest(std::wstring id, bool isServed)
    : m_id(std::move(id)), m_isServed(isServed),
      m_end([host = m_host, request = m_id] { host.Tell({L"request-completed", request}); })
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
    if (m_isServed && m_host.IsCurrent())
    {
        CurrentHost().DeferralTaken(m_id);
    }
}

void PendingRequest::DeferralCompleted(bool again)
{
    if (m_isServed && m_host.IsCurrent())
    {
        CurrentHost().DeferralCompleted(m_id);
    }
    if (!again)
    {
        m_end.Finish();
    }
}

} // namespace sim
