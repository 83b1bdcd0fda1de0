#include "simulator/runtime/CurrentHost.h"

#include <combaseapi.h>

namespace sim
{

namespace
{

// The slot for a thread's host. Not thread_local: GCC's own goes through a thread library that at times does not know
// the threads of the system's pool, and then writes to address 0x68.
DWORD HostSlot()
{
    static auto const slot = TlsAlloc();
    return slot;
}

// Never destroyed: at the end of the process its other threads may still use it.
std::shared_ptr<Host>& ProcessHost()
{
    static auto* const host = new std::shared_ptr<Host>;
    return *host;
}

// Gives the process a multi-threaded apartment for good, which its pool threads belong to: completions arrive there.
void NeedMultiThreadedApartment()
{
    static auto* const usage = [] {
        CO_MTA_USAGE_COOKIE cookie = nullptr;
        CoIncrementMTAUsage(&cookie);
        return cookie;
    }();
    static_cast<void>(usage);
}

} // namespace

Host& CurrentHost() noexcept
{
    auto* const own = static_cast<Host*>(TlsGetValue(HostSlot()));
    return own ? *own : *ProcessHost();
}

void SetProcessHost(std::shared_ptr<Host> host)
{
    NeedMultiThreadedApartment();
    ProcessHost() = std::move(host);
}

HostScope::HostScope(Host& host) noexcept : m_before(static_cast<Host*>(TlsGetValue(HostSlot())))
{
    TlsSetValue(HostSlot(), &host);
}

HostScope::~HostScope()
{
    TlsSetValue(HostSlot(), m_before);
}

} // namespace sim
