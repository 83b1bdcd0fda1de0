#pragma once
#include "simulator/runtime/DeferralCounter.h"
#include "simulator/runtime/HostReference.h"

#include <atomic>
#include <cstdint>

namespace sim
{

// A request that this process has received, until the platform hears that it is done with: when its handlers have
// returned or, once a deferral was taken, when all that were taken are completed, wherever the handlers are.
class PendingRequest
{
  public:
    // isServed: it came to the service's end.
    PendingRequest(std::uint32_t number, bool isServed);

    std::uint32_t Number() const noexcept { return m_number; }

    HostReference const& ItsHost() const noexcept { return m_host; }

    void HandlersReturned();

    void DeferralTaken();

    // again: of one that was completed before.
    void DeferralCompleted(bool again);

  private:
    std::uint32_t m_number;
    bool m_isServed;
    HostReference m_host;
    std::atomic<bool> m_waitsForHandlers = true;
    DeferralCounter m_end;
};

} // namespace sim
