#pragma once
#include <utility>
#include <winrt/Windows.Foundation.h>

namespace sim
{

// An asynchronous operation whose handler for completion a fault strikes.
template <typename Operation>
struct RejectingOperation
    : winrt::implements<RejectingOperation<Operation>, Operation, winrt::Windows::Foundation::IAsyncInfo>
{
    using Handler = decltype(std::declval<Operation>().Completed());

    // refusal: with what it refuses each handler while it goes on as it would. 0: it has ended, and calls each handler
    // at once.
    RejectingOperation(Operation operation, std::int32_t refusal)
        : m_operation(std::move(operation)), m_refusal(refusal)
    {
    }

    void Completed(Handler const& handler)
    {
        winrt::check_hresult(m_refusal);
        handler(*this, Status());
    }

    Handler Completed() const { return nullptr; }

    auto GetResults() const { return m_operation.GetResults(); }

    std::uint32_t Id() const { return m_operation.Id(); }

    winrt::Windows::Foundation::AsyncStatus Status() const { return m_operation.Status(); }

    winrt::hresult ErrorCode() const { return m_operation.ErrorCode(); }

    void Cancel() const { m_operation.Cancel(); }

    void Close() const { m_operation.Close(); }

  private:
    Operation m_operation;
    std::int32_t m_refusal;
};

// The same for one that must end first; waits for that.
template <typename Operation>
Operation Ended(Operation const& operation)
{
    try
    {
        operation.get();
    }
    catch (...)
    {
        // ignored: GetResults gives it, too
    }
    return winrt::make<RejectingOperation<Operation>>(operation, 0);
}

} // namespace sim
