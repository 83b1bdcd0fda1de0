#pragma once
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>
#include <winrt/Windows.ApplicationModel.AppService.h>
#include <winrt/Windows.Foundation.Collections.h>

namespace helper
{

// A connection to the client's app service. Keeps each message that arrives for Wait. Failures are hresult_error.
class Session
{
  public:
    using AppServiceClosedStatus = winrt::Windows::ApplicationModel::AppService::AppServiceClosedStatus;
    using AppServiceConnection = winrt::Windows::ApplicationModel::AppService::AppServiceConnection;
    using AppServiceConnectionStatus = winrt::Windows::ApplicationModel::AppService::AppServiceConnectionStatus;
    using AppServiceResponse = winrt::Windows::ApplicationModel::AppService::AppServiceResponse;
    using ValueSet = winrt::Windows::Foundation::Collections::ValueSet;

    struct Message
    {
        std::wstring newMessage; // the value of "NewMessage", empty without one
        std::optional<std::wstring> uri;
    };

    // Called for each message, on a thread of the platform.
    using Listener = std::function<void(ValueSet const&)>;

    explicit Session(Listener const& listener = [](auto&&) {});
    Session(Session const&) = delete;
    Session& operator=(Session const&) = delete;
    ~Session();

    // Any status but Success is the platform's reason for refusing the connection.
    AppServiceConnectionStatus Open(std::wstring const& packageFamilyName, std::wstring const& appServiceName);

    // Nothing when the platform does not answer in time.
    std::optional<AppServiceConnectionStatus> TryOpen(std::wstring const& packageFamilyName,
                                                      std::wstring const& appServiceName,
                                                      std::chrono::milliseconds timeout);

    // Null when no response comes in time.
    AppServiceResponse Send(ValueSet const& request, std::chrono::milliseconds timeout);

    // Waits for the next message. Nothing if none comes in time, or the connection closes before.
    std::optional<Message> Wait(std::chrono::milliseconds timeout);

    // The name of the AppServiceClosedStatus; nothing while the connection lives.
    std::optional<std::wstring> HowItEnded();

    // Waits until the connection ends. The name of the AppServiceClosedStatus.
    std::wstring WaitForEnd();

  private:
    // Shared with the handlers, which the platform may call after this object is destroyed.
    struct Inbox
    {
        std::mutex mutex;
        std::condition_variable changed;
        std::vector<Message> messages;
        std::size_t taken = 0;
        std::optional<AppServiceClosedStatus> closed;
    };

    auto BeginOpen(std::wstring const& packageFamilyName, std::wstring const& appServiceName);

    AppServiceConnection m_connection;
    std::shared_ptr<Inbox> m_inbox = std::make_shared<Inbox>();
};

} // namespace helper
