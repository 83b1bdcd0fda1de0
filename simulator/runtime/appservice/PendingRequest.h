#pragma once
#include "simulator/runtime/HostLink.h"
#include "simulator/runtime/PendingEnd.h"

#include <atomic>
#include <string>

namespace sim
{

// A request that this process has received, until the platform hears that it is done with: when its handlers have
// returned or, once a deferral was taken, when all that were taken are completed, wherever the handlers are.
class PendingRequest
{
  public:
    // isServed: it came to the service's end.
    PendingRequest(std::wstring id, bool isServed);

    std::wstring const& Id() const noexcept { return m_id; }

    HostLink const& Host() const noexcept { return m_host; }

    void HandlersReturned();

    void DeferralTaken();

    // again: of one that was completed before.
    void DeferralCompleted(bool again);

  private:
    std::wstring m_id;
    bool m_isServed;
    HostLink m_host;
    std::atomic<bool> m_waitsForHandlers = true;
    PendingEnd m_end;
};

} // namespace sim
