#pragma once
#include "simulator/runtime/Namespaces.h"

#include <winrt/Windows.ApplicationModel.AppService.h>
#include <winrt/Windows.Foundation.Collections.h>

namespace sim
{

// What came of a message that was sent.
struct AppServiceResponse : winrt::implements<AppServiceResponse, AppModel::AppService::IAppServiceResponse>
{
    using class_type = AppModel::AppService::AppServiceResponse;

    // message: empty when there was no response.
    AppServiceResponse(AppModel::AppService::AppServiceResponseStatus status, Collections::ValueSet message)
        : m_status(status), m_message(std::move(message))
    {
    }

    AppModel::AppService::AppServiceResponseStatus Status() const noexcept { return m_status; }

    Collections::ValueSet Message() const { return m_message; }

  private:
    AppModel::AppService::AppServiceResponseStatus m_status;
    Collections::ValueSet m_message;
};

} // namespace sim
