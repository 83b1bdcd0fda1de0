#pragma once
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/Runtime.h"
#include "simulator/runtime/appservice/PendingRequest.h"

#include <winrt/Windows.ApplicationModel.AppService.h>
#include <winrt/Windows.Foundation.Collections.h>
#include <winrt/Windows.Foundation.h>

namespace sim
{

// A message that arrived, with the way to answer it.
struct AppServiceRequest : winrt::implements<AppServiceRequest, AppModel::AppService::IAppServiceRequest>
{
    using class_type = AppModel::AppService::AppServiceRequest;
    using Status = AppModel::AppService::AppServiceResponseStatus;

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

} // namespace sim
