#pragma once
#include <utility>
#include <winrt/Windows.Foundation.h>

namespace sim
{

// An asynchronous operation that goes on as it would, and refuses each handler for its completion.
template <typename Operation>
struct UnheardOperation
    : winrt::implements<UnheardOperation<Operation>, Operation, winrt::Windows::Foundation::IAsyncInfo>
{
    using Handler = decltype(std::declval<Operation>().Completed());

    UnheardOperation(Operation operation, std::int32_t result) : m_operation(std::move(operation)), m_result(result) {}

    void Completed(Handler const&) const { throw winrt::hresult_error(m_result); }

    Handler Completed() const { return nullptr; }

    auto GetResults() const { return m_operation.GetResults(); }

    std::uint32_t Id() const { return m_operation.Id(); }

    winrt::Windows::Foundation::AsyncStatus Status() const { return m_operation.Status(); }

    winrt::hresult ErrorCode() const { return m_operation.ErrorCode(); }

    void Cancel() const { m_operation.Cancel(); }

    void Close() const { m_operation.Close(); }

  private:
    Operation m_operation;
    std::int32_t m_result;
};

} // namespace sim
