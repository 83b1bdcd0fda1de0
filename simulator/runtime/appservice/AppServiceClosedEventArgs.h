#pragma once
#include "simulator/runtime/Namespaces.h"

#include <winrt/Windows.ApplicationModel.AppService.h>

namespace sim
{

// What a handler of ServiceClosed gets.
struct AppServiceClosedEventArgs
    : winrt::implements<AppServiceClosedEventArgs, AppModel::AppService::IAppServiceClosedEventArgs>
{
    using class_type = AppModel::AppService::AppServiceClosedEventArgs;

    explicit AppServiceClosedEventArgs(AppModel::AppService::AppServiceClosedStatus status) : m_status(status) {}

    AppModel::AppService::AppServiceClosedStatus Status() const noexcept { return m_status; }

  private:
    AppModel::AppService::AppServiceClosedStatus m_status;
};

} // namespace sim
