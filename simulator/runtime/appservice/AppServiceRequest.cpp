#include "simulator/runtime/appservice/AppServiceRequest.h"

#include "simulator/runtime/AsyncFault.h"
#include "simulator/runtime/PoolAwaiters.h"
#include "simulator/runtime/values/ValueText.h"

namespace sim
{

namespace
{

using Status = AppServiceRequest::Status;

Foundation::IAsyncOperation<Status> Respond(std::shared_ptr<PendingRequest> request, AsyncFault fault, std::wstring set)
{
    co_await winrt::resume_agile(fault.Begin());
    if (auto const status = fault.Status())
    {
        co_await winrt::resume_background();
        co_return static_cast<Status>(*status);
    }
    if (!request->Host().IsCurrent())
    {
        co_return Status::Failure;
    }
    if (set.size() > longestText)
    {
        co_await winrt::resume_background();
        co_return Status::MessageSizeTooLarge;
    }
    Message question = {L"respond", request->Id(), std::move(set)};
    auto const answer = co_await Asking(std::move(question));
    co_await winrt::resume_agile(fault.End());
    co_return static_cast<Status>(NumberIn(answer));
}

} // namespace

Foundation::IAsyncOperation<Status> AppServiceRequest::SendResponseAsync(Collections::ValueSet const& message) const
{
    AsyncFault const fault(L"AppServiceRequest.SendResponseAsync");
    if (fault.GivesNull())
    {
        return nullptr;
    }
    return fault.Handed(Respond(m_request, fault, TextOf(message ? message : throw winrt::hresult_invalid_argument())));
}

} // namespace sim
