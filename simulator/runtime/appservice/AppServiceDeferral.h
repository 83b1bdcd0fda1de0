#pragma once
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/Runtime.h"
#include "simulator/runtime/appservice/PendingRequest.h"

#include <atomic>
#include <winrt/Windows.ApplicationModel.AppService.h>

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

} // namespace sim
