#pragma once
#include "helper/Session.h"

#include <chrono>
#include <memory>
#include <optional>

namespace doctor
{

using ConnectionStatus = winrt::Windows::ApplicationModel::AppService::AppServiceConnectionStatus;
using ResponseStatus = winrt::Windows::ApplicationModel::AppService::AppServiceResponseStatus;

// What comes of the request for the channel.
struct ChannelAnswer
{
    std::optional<ResponseStatus> response;          // nothing: the request was not completed in time
    std::optional<helper::Session::Message> message; // nothing: none came
    std::chrono::milliseconds took{};
};

// The app's service, as a desktop helper reaches it. Failures are hresult_error.
class AppService
{
  public:
    AppService() = default;
    AppService(AppService const&) = delete;
    AppService& operator=(AppService const&) = delete;
    virtual ~AppService() = default;

    // Nothing when the platform does not answer in time.
    virtual std::optional<ConnectionStatus> Open(std::chrono::milliseconds limit) = 0;

    // On the connection that is open.
    virtual ChannelAnswer AskForChannel(std::chrono::milliseconds limit) = 0;
};

// The one of the package that the helper is made for.
std::unique_ptr<AppService> ConnectingAppService();

} // namespace doctor
