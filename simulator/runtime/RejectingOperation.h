#pragma once
#include "simulator/runtime/Implements.h"

#include <winrt/Windows.Foundation.h>

namespace sim
{

// An asynchronous operation that goes on as it would, but refuses each handler for its completion.
template <typename Operation>
struct RejectingOperation : Implements<RejectingOperation<Operation>, Operation, Foundation::IAsyncInfo>
{
    RejectingOperation(Operation operation, std::int32_t refusal)
        : m_operation(std::move(operation)), m_refusal(refusal)
    {
    }

    void Completed(auto const&) const { winrt::check_hresult(m_refusal); }

    std::nullptr_t Completed() const noexcept { return nullptr; }

    auto GetResults() const { return m_operation.GetResults(); }

    auto Status() const { return m_operation.Status(); }

    auto ErrorCode() const { return m_operation.ErrorCode(); }

    void Cancel() const { m_operation.Cancel(); }

    void Close() const { m_operation.Close(); }

  private:
    Operation m_operation;
    std::int32_t m_refusal;
};

} // namespace sim
