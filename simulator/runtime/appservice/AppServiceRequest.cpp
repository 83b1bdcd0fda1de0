#include "simulator/runtime/appservice/AppServiceRequest.h"

#include "simulator/protocol/Frames.h"
#include "simulator/runtime/Deferral.h"
#include "simulator/runtime/Record.h"
#include "simulator/runtime/values/ValueBytes.h"

namespace sim
{

namespace
{

using Status = AppService::AppServiceResponseStatus;

class PendingRequest
{
  public:
    PendingRequest(std::uint32_t number, bool isServed)
        : m_number(number), m_isServed(isServed),
          m_end([host = m_host, number] { host.Tell(RequestCompleted{number}); })
    {
    }

    std::uint32_t Number() const noexcept { return m_number; }

    HostReference const& ItsHost() const noexcept { return m_host; }

    void HandlersReturned()
    {
        if (m_waitsForHandlers.exchange(false))
        {
            m_end.Finish();
        }
    }

    void DeferralTaken()
    {
        m_end.Take();
        HandlersReturned(); // from here on they do not count
        if (auto const host = m_isServed ? m_host.Get() : nullptr)
        {
            host->DeferralTaken(m_number);
        }
    }

    void DeferralCompleted(bool isFirst)
    {
        if (auto const host = m_isServed ? m_host.Get() : nullptr)
        {
            host->DeferralCompleted(m_number);
        }
        if (isFirst)
        {
            m_end.Finish();
        }
    }

  private:
    std::uint32_t m_number;
    bool m_isServed;
    HostReference m_host;
    std::atomic<bool> m_waitsForHandlers = true;
    DeferralCounter m_end;
};

// A request, with the way to answer it.
struct AppServiceRequest
    : RecordOf<AppServiceRequest, AppService::AppServiceRequest, Interfaces<AppService::IAppServiceRequest>,
               Property<"Message", Collections::ValueSet>>
{
    AppServiceRequest(std::shared_ptr<PendingRequest> pending, Collections::ValueSet const& message)
        : RecordOf(message), m_pending(std::move(pending))
    {
    }

    // The sender gets the response when the request is done with.
    Foundation::IAsyncOperation<Status> SendResponseAsync(Collections::ValueSet const& message) const
    {
        AsyncFault const fault(L"AppServiceRequest.SendResponseAsync");
        if (fault.GivesNull())
        {
            return nullptr;
        }
        auto const& process = m_pending->ItsHost();
        auto set = BytesOf(message ? message : throw winrt::hresult_invalid_argument());
        auto const known = KnownStatus(fault, process, set);
        auto const statusIn = [](ResponseTaken const& taken) { return static_cast<Status>(taken.status); };
        GiveResponse response{m_pending->Number(), std::move(set)};
        return fault.Handed(
            AskPlatform<Foundation::IAsyncOperation<Status>>(fault, process, std::move(response), statusIn, known));
    }

  private:
    std::shared_ptr<PendingRequest> m_pending;
};

struct AppServiceRequestReceivedEventArgs
    : RecordOf<AppServiceRequestReceivedEventArgs, AppService::AppServiceRequestReceivedEventArgs,
               Interfaces<AppService::IAppServiceRequestReceivedEventArgs>,
               Property<"Request", AppService::AppServiceRequest>>
{
    AppServiceRequestReceivedEventArgs(std::shared_ptr<PendingRequest> pending, Collections::ValueSet const& message)
        : RecordOf(winrt::make<AppServiceRequest>(pending, message)), m_pending(std::move(pending))
    {
    }

    // The connection's next message then no longer waits for the handler to return.
    AppService::AppServiceDeferral GetDeferral() const
    {
        if (InjectFault(L"AppServiceRequestReceivedEventArgs.GetDeferral"))
        {
            return nullptr;
        }
        m_pending->DeferralTaken();
        MessageRouter::ReleaseQueue();
        return winrt::make<Deferral<AppService::AppServiceDeferral>>(
            [pending = m_pending](bool isFirst) { pending->DeferralCompleted(isFirst); });
    }

  private:
    std::shared_ptr<PendingRequest> m_pending;
};

} // namespace

void HandleRequest(RequestArrived const& arrived, bool isServed, RequestHandlers const& handlers)
{
    auto const pending = std::make_shared<PendingRequest>(arrived.request, isServed);
    handlers(winrt::make<AppServiceRequestReceivedEventArgs>(pending, SetFrom(arrived.set)));
    pending->HandlersReturned();
}

std::optional<Status> KnownStatus(AsyncFault const& fault, HostReference const& process, std::string const& set)
{
    if (auto const status = fault.Status())
    {
        return static_cast<Status>(*status);
    }
    if (!process.Get())
    {
        return Status::Failure;
    }
    return set.size() > largestSet ? std::optional(Status::MessageSizeTooLarge) : std::nullopt;
}

} // namespace sim
