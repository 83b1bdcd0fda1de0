#pragma once
#include "simulator/protocol/Fault.h"
#include "simulator/runtime/CancellableOperation.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <winrt/Windows.Foundation.h>

namespace sim
{

// What strikes an asynchronous call, if anything does.
class AsyncFault
{
  public:
    // Throws hresult_error when the call itself is to fail.
    explicit AsyncFault(std::wstring_view call);

    // The call is to hand out null.
    bool GivesNull() const noexcept { return Is(FaultKind::Null); }

    // What the operation is to complete with, without doing anything.
    std::optional<std::uint32_t> Status() const noexcept
    {
        return Is(FaultKind::Status) ? std::optional(m_fault->value) : std::nullopt;
    }

    // What the call hands out for its operation: one that can be cancelled, or takes no handler, or has ended already.
    template <typename Operation>
    Operation Handed(Operation const& operation) const
    {
        auto const refusal = Is(FaultKind::Unheard) ? m_fault->Result() : 0;
        return Is(FaultKind::Ended) ? Ended(operation) : CancellableOperation<Operation>::Of(operation, refusal);
    }

    // The operation awaits it first: it fails, is cancelled or never goes on if it is to. Agile.
    winrt::Windows::Foundation::IAsyncAction Begin() const { return Begin(m_fault); }

    // The operation awaits it last: it takes as long as it is to. Agile.
    winrt::Windows::Foundation::IAsyncAction End() const { return End(m_fault); }

  private:
    bool Is(FaultKind kind) const noexcept { return m_fault && m_fault->kind == kind; }

    // Waits for its end.
    template <typename Operation>
    static Operation Ended(Operation operation)
    {
        try
        {
            operation.get();
        }
        catch (...)
        {
            // ignored: GetResults throws it, too
        }
        co_return operation.GetResults();
    }

    // Coroutines hold what they work on.
    static winrt::Windows::Foundation::IAsyncAction Begin(std::optional<Fault> fault);
    static winrt::Windows::Foundation::IAsyncAction End(std::optional<Fault> fault);

    std::optional<Fault> m_fault;
};

} // namespace sim
