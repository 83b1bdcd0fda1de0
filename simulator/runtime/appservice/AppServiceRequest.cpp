#include "simulator/runtime/appservice/AppServiceRequest.h"

#include "simulator/protocol/Frames.h"
#include "simulator/runtime/AsyncFault.h"
#include "simulator/runtime/Awaiters.h"
#include "simulator/runtime/values/ValueBytes.h"

namespace sim
{

namespace
{

using Status = AppServiceRequest::Status;

Foundation::IAsyncOperation<Status> Respond(std::shared_ptr<PendingRequest> request, AsyncFault fault, std::string set)
{
    co_await winrt::resume_agile(fault.Begin());
    if (auto const status = fault.Status())
    {
        co_await winrt::resume_background();
        co_return static_cast<Status>(*status);
    }
    auto const host = request->ItsHost().Get();
    if (!host)
    {
        co_return Status::Failure;
    }
    if (set.size() > largestSet)
    {
        co_await winrt::resume_background();
        co_return Status::MessageSizeTooLarge;
    }
    GiveResponse const question{request->Number(), std::move(set)};
    auto const answer = co_await AnswerOf(*host, question);
    co_await winrt::resume_agile(fault.End());
    co_return static_cast<Status>(answer.status);
}

} // namespace

Foundation::IAsyncOperation<Status> AppServiceRequest::SendResponseAsync(Collections::ValueSet const& message) const
{
    AsyncFault const fault(L"AppServiceRequest.SendResponseAsync");
    if (fault.GivesNull())
    {
        return nullptr;
    }
    return fault.Handed(
        Respond(m_request, fault, BytesOf(message ? message : throw winrt::hresult_invalid_argument())));
}

} // namespace sim
