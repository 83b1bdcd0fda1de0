#pragma once
#include "simulator/runtime/MessageRouter.h"
#include "simulator/runtime/Runtime.h"
#include "simulator/runtime/appservice/PendingRequest.h"

#include <atomic>
#include <winrt/Windows.ApplicationModel.AppService.h>
#include <winrt/Windows.Foundation.Collections.h>
#include <winrt/Windows.Foundation.h>

namespace sim
{

// A message that arrived, with the way to answer it.
struct AppServiceRequest : winrt::implements<AppServiceRequest, AppService::IAppServiceRequest>
{
    using class_type = AppService::AppServiceRequest;
    using Status = AppService::AppServiceResponseStatus;

    AppServiceRequest(std::shared_ptr<PendingRequest> request, Collections::ValueSet message)
        : m_request(std::move(request)), m_message(std::move(message))
    {
    }

    Collections::ValueSet Message() const
    {
        return StruckByNull(L"AppServiceRequest.Message") ? Collections::ValueSet(nullptr) : m_message;
    }

    // The sender gets the response when the request is done with.
    Foundation::IAsyncOperation<Status> SendResponseAsync(Collections::ValueSet const& message) const;

  private:
    std::shared_ptr<PendingRequest> m_request;
    Collections::ValueSet m_message;
};

// Keeps a request open until it is completed. Released without that, it never closes it.
struct AppServiceDeferral : winrt::implements<AppServiceDeferral, AppService::IAppServiceDeferral>
{
    using class_type = AppService::AppServiceDeferral;

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
    : winrt::implements<AppServiceRequestReceivedEventArgs, AppService::IAppServiceRequestReceivedEventArgs>
{
    using class_type = AppService::AppServiceRequestReceivedEventArgs;

    AppServiceRequestReceivedEventArgs(std::shared_ptr<PendingRequest> request, Collections::ValueSet const& message)
        : m_pending(std::move(request)), m_request(winrt::make<AppServiceRequest>(m_pending, message))
    {
    }

    AppService::AppServiceRequest Request() const
    {
        constexpr std::wstring_view call = L"AppServiceRequestReceivedEventArgs.Request";
        return StruckByNull(call) ? AppService::AppServiceRequest(nullptr) : m_request;
    }

    // From here on the connection's next message does not wait for the handler's return.
    AppService::AppServiceDeferral GetDeferral() const
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
    AppService::AppServiceRequest m_request;
};

} // namespace sim
