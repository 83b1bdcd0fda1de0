#pragma once
#include "simulator/runtime/Deliveries.h"
#include "simulator/runtime/appservice/AppServiceDeferral.h"
#include "simulator/runtime/appservice/AppServiceRequest.h"

namespace sim
{

// What a handler of RequestReceived gets.
struct AppServiceRequestReceivedEventArgs
    : winrt::implements<AppServiceRequestReceivedEventArgs, Platform::AppService::IAppServiceRequestReceivedEventArgs>
{
    using class_type = Platform::AppService::AppServiceRequestReceivedEventArgs;

    AppServiceRequestReceivedEventArgs(std::shared_ptr<PendingRequest> request, Collections::ValueSet const& message)
        : m_pending(std::move(request)), m_request(winrt::make<AppServiceRequest>(m_pending, message))
    {
    }

    Platform::AppService::AppServiceRequest Request() const
    {
        constexpr std::wstring_view call = L"AppServiceRequestReceivedEventArgs.Request";
        return StruckByNull(call) ? Platform::AppService::AppServiceRequest(nullptr) : m_request;
    }

    // From here on the connection's next message does not wait for the handler's return.
    Platform::AppService::AppServiceDeferral GetDeferral() const
    {
        if (StruckByNull(L"AppServiceRequestReceivedEventArgs.GetDeferral"))
        {
            return nullptr;
        }
        m_pending->DeferralTaken();
        Deliveries::PassOn();
        return winrt::make<AppServiceDeferral>(m_pending);
    }

  private:
    std::shared_ptr<PendingRequest> m_pending;
    Platform::AppService::AppServiceRequest m_request;
};

} // namespace sim
