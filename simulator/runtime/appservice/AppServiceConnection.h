#pragma once
#include "simulator/runtime/AsyncFault.h"
#include "simulator/runtime/BufferedEvent.h"
#include "simulator/runtime/HostReference.h"
#include "simulator/runtime/Implements.h"

#include <mutex>
#include <winrt/Windows.ApplicationModel.AppService.h>
#include <winrt/Windows.Foundation.Collections.h>
#include <winrt/Windows.Foundation.h>

namespace sim
{

// One end of an app-service connection. The caller's end closes with its last reference; the service's end is kept by
// its task.
struct AppServiceConnection : Implements<AppServiceConnection, AppService::IAppServiceConnection,
                                         AppService::IAppServiceConnection2, Foundation::IClosable>
{
    using class_type = AppService::AppServiceConnection;
    using OpenStatus = AppService::AppServiceConnectionStatus;
    using Response = AppService::AppServiceResponse;
    using RequestReceivedHandler =
        Foundation::TypedEventHandler<class_type, AppService::AppServiceRequestReceivedEventArgs>;
    using ServiceClosedHandler = Foundation::TypedEventHandler<class_type, AppService::AppServiceClosedEventArgs>;

    // A caller's end that is not open yet.
    AppServiceConnection() = default;
    AppServiceConnection(AppServiceConnection const&) = delete;
    AppServiceConnection& operator=(AppServiceConnection const&) = delete;
    ~AppServiceConnection() override;

    // The service's end of a connection that a caller opens.
    static winrt::com_ptr<AppServiceConnection> OfService(std::uint32_t connection, std::wstring_view name);

    winrt::hstring AppServiceName() const;
    void AppServiceName(winrt::hstring const& value);
    winrt::hstring PackageFamilyName() const;
    void PackageFamilyName(winrt::hstring const& value);

    // On an end that is not open; again after a failure.
    Foundation::IAsyncOperation<OpenStatus> OpenAsync();

    // Ends when the other end has done with the message. Throws RO_E_CLOSED after Close, E_ILLEGAL_METHOD_CALL when it
    // was not opened.
    Foundation::IAsyncOperation<Response> SendMessageAsync(Collections::ValueSet const& message);

    winrt::event_token RequestReceived(RequestReceivedHandler const& handler);
    void RequestReceived(winrt::event_token token);
    winrt::event_token ServiceClosed(ServiceClosedHandler const& handler);
    void ServiceClosed(winrt::event_token token);

    // Nothing is raised any more.
    void Close();

  private:
    enum class State
    {
        Unopened,
        Opening,
        Open,
        Closed
    };

    class UnopenedUnlessOpened;

    Foundation::IAsyncOperation<OpenStatus> Open(AsyncFault fault);
    Foundation::IAsyncOperation<Response> Send(AsyncFault fault, std::string set);
    void BeginOpening();
    void Opened(std::uint32_t connection);
    void EndOpening();
    void CheckOpen() const;
    void CheckNotClosed() const;
    void Attach();
    void CloseOpen();
    void Receive(MessageRouter::Message const& message);
    void Receive(RequestArrived const& arrived);
    void Receive(OtherEndClosed const& closed);
    void RaiseRequest(RequestArrived const& arrived);

    HostReference m_host;
    ConnectionEnd m_end = ConnectionEnd::Caller;
    mutable std::mutex m_mutex; // over all that follows but the events
    State m_state = State::Unopened;
    std::uint32_t m_connection = 0; // its number, once open; it stays
    winrt::hstring m_name;
    winrt::hstring m_family;
    BufferedEvent<AppServiceConnection, RequestReceivedHandler> m_requestReceived;
    BufferedEvent<AppServiceConnection, ServiceClosedHandler> m_serviceClosed;
};

} // namespace sim
