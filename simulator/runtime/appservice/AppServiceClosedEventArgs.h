#pragma once
#include "simulator/runtime/Namespaces.h"

#include <winrt/Windows.ApplicationModel.AppService.h>

namespace sim
{

// What a handler of ServiceClosed gets.
struct AppServiceClosedEventArgs
    : winrt::implements<AppServiceClosedEventArgs, Platform::AppService::IAppServiceClosedEventArgs>
{
    using class_type = Platform::AppService::AppServiceClosedEventArgs;

    explicit AppServiceClosedEventArgs(Platform::AppService::AppServiceClosedStatus status) : m_status(status) {}

    Platform::AppService::AppServiceClosedStatus Status() const noexcept { return m_status; }

  private:
    Platform::AppService::AppServiceClosedStatus m_status;
};

} // namespace sim
