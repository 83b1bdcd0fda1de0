#include "simulator/runtime/AsyncFault.h"

#include "simulator/runtime/Awaiters.h"
#include "simulator/runtime/Runtime.h"

using winrt::Windows::Foundation::IAsyncAction;

namespace sim
{

AsyncFault::AsyncFault(std::wstring_view call) : m_fault(CurrentHost().TakeFault(call))
{
    if (m_fault && m_fault->kind == FaultKind::Now)
    {
        throw winrt::hresult_error(m_fault->Result());
    }
}

IAsyncAction AsyncFault::Begin(std::optional<Fault> fault)
{
    if (!fault)
    {
        co_return;
    }
    if (fault->kind == FaultKind::Never)
    {
        co_await std::suspend_always();
    }
    if (fault->kind == FaultKind::Completion || fault->kind == FaultKind::Cancelled)
    {
        co_await winrt::resume_background(); // later, and where completions arrive
        constexpr auto cancelled = static_cast<std::int32_t>(0x800704C7);
        throw winrt::hresult_error(fault->kind == FaultKind::Cancelled ? cancelled : fault->Result());
    }
}

IAsyncAction AsyncFault::End(std::optional<Fault> fault)
{
    if (fault && fault->kind == FaultKind::Delay)
    {
        co_await Delay(fault->value);
    }
}

} // namespace sim
