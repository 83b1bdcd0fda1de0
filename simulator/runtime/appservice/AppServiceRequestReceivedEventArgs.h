#pragma once
#include "simulator/runtime/MessageRouter.h"
#include "simulator/runtime/Runtime.h"
#include "simulator/runtime/appservice/AppServiceRequest.h"

#include <atomic>

namespace sim
{

// Keeps a request open until it is completed. Released without that, it never closes it.
struct AppServiceDeferral : winrt::implements<AppServiceDeferral, AppModel::AppService::IAppServiceDeferral>
{
    using class_type = AppModel::AppService::AppServiceDeferral;

    explicit AppServiceDeferral(std::shared_ptr<PendingRequest> request) : m_request(std::move(request)) {}

    // Once is enough; more does nothing.
    void Complete()
    {
        ThrowIfStruck(L"AppServiceDeferral.Complete");
        m_request->DeferralCompleted(m_isCompleted.exchange(true));
    }

  private:
    std::shared_ptr<PendingRequest> m_request;
    std::atomic<bool> m_isCompleted = false;
};

// What a handler of RequestReceived gets.
struct AppServiceRequestReceivedEventArgs
    : winrt::implements<AppServiceRequestReceivedEventArgs, AppModel::AppService::IAppServiceRequestReceivedEventArgs>
{
    using class_type = AppModel::AppService::AppServiceRequestReceivedEventArgs;

    AppServiceRequestReceivedEventArgs(std::shared_ptr<PendingRequest> request, Collections::ValueSet const& message)
        : m_pending(std::move(request)), m_request(winrt::make<AppServiceRequest>(m_pending, message))
    {
    }

    AppModel::AppService::AppServiceRequest Request() const
    {
        constexpr std::wstring_view call = L"AppServiceRequestReceivedEventArgs.Request";
        return StruckByNull(call) ? AppModel::AppService::AppServiceRequest(nullptr) : m_request;
    }

    // From here on the connection's next message does not wait for the handler's return.
    AppModel::AppService::AppServiceDeferral GetDeferral() const
    {
        if (StruckByNull(L"AppServiceRequestReceivedEventArgs.GetDeferral"))
        {
            return nullptr;
        }
        m_pending->DeferralTaken();
        MessageRouter::ReleaseQueue();
        return winrt::make<AppServiceDeferral>(m_pending);
    }

  private:
    std::shared_ptr<PendingRequest> m_pending;
    AppModel::AppService::AppServiceRequest m_request;
};

} // namespace sim
