#pragma once
#include "simulator/protocol/Messages.h"
#include "simulator/runtime/AsyncCall.h"

#include <functional>
#include <optional>
#include <string>
#include <winrt/Windows.ApplicationModel.AppService.h>

namespace sim
{

// The handlers of RequestReceived.
using RequestHandlers = std::function<void(AppService::AppServiceRequestReceivedEventArgs const&)>;

// Calls the handlers for a request that this process has received, and tells the platform when it is done with: when
// they have returned or, once a deferral was taken, when all that were taken are completed, wherever the handlers are.
// isServed: it came to the service's end.
void HandleRequest(RequestArrived const& arrived, bool isServed, RequestHandlers const& handlers);

// The outcome of sending a value set that the platform need not be asked for, if there is one.
std::optional<AppService::AppServiceResponseStatus> KnownStatus(AsyncFault const& fault, HostReference const& process,
                                                                std::string const& set);

} // namespace sim
