#pragma once
#include "simulator/runtime/HostLink.h"
#include "simulator/runtime/PendingEnd.h"

#include <string>

namespace sim
{

// A request that this process has received, until the platform hears that it is done with.
class PendingRequest
{
  public:
    // isServed: it came to the service's end.
    PendingRequest(std::wstring id, bool isServed);

    std::wstring const& Id() const noexcept { return m_id; }

    HostLink const& Host() const noexcept { return m_host; }

    void HandlersReturned() { m_end.Finish(); }

    void DeferralTaken();

    // again: of one that was completed before.
    void DeferralCompleted(bool again);

  private:
    std::wstring m_id;
    bool m_isServed;
    HostLink m_host;
    PendingEnd m_end;
};

} // namespace sim
