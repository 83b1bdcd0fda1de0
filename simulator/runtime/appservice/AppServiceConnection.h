#pragma once
#include "simulator/runtime/AsyncFault.h"
#include "simulator/runtime/HostLink.h"
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/Unserved.h"
#include "simulator/runtime/WaitingEvent.h"

#include <mutex>
#include <winrt/Windows.ApplicationModel.AppService.h>
#include <winrt/Windows.Foundation.Collections.h>
#include <winrt/Windows.Foundation.h>

namespace sim
{

// One end of an app-service connection. The caller's end closes with its last reference; the service's end is kept by
// its task.
struct AppServiceConnection : winrt::implements<AppServiceConnection, Platform::AppService::IAppServiceConnection,
                                                Platform::AppService::IAppServiceConnection2, Foundation::IClosable>
{
    using class_type = Platform::AppService::AppServiceConnection;
    using OpenStatus = Platform::AppService::AppServiceConnectionStatus;
    using Response = Platform::AppService::AppServiceResponse;
    using RequestReceivedHandler =
        Foundation::TypedEventHandler<class_type, Platform::AppService::AppServiceRequestReceivedEventArgs>;
    using ServiceClosedHandler =
        Foundation::TypedEventHandler<class_type, Platform::AppService::AppServiceClosedEventArgs>;

    // A caller's end that is not open yet.
    AppServiceConnection() = default;
    AppServiceConnection(AppServiceConnection const&) = delete;
    AppServiceConnection& operator=(AppServiceConnection const&) = delete;
    ~AppServiceConnection() override;

    // The service's end of a connection that a caller opens.
    static winrt::com_ptr<AppServiceConnection> OfService(std::wstring const& connection, std::wstring_view name);

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

    template <typename... T>
    Unserved OpenRemoteAsync(T const&...) const
    {
        return {};
    }

    template <typename... T>
    Unserved User(T const&...) const
    {
        return {};
    }

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
    Foundation::IAsyncOperation<Response> Send(AsyncFault fault, std::wstring set);
    void BeginOpening();
    void Opened(std::wstring const& connection);
    void EndOpening();
    void CheckOpen() const;
    void CheckNotClosed() const;
    void Attach();
    void CloseOpen();
    void Receive(Message const& message);
    void ReceiveRequest(std::wstring const& request, std::wstring const& set);
    void RaiseRequest(std::wstring const& request, std::wstring const& set);

    HostLink m_host;
    std::wstring m_end = L"caller";
    mutable std::mutex m_mutex; // over all that follows but the events
    State m_state = State::Unopened;
    std::wstring m_connection; // its id, once open; it stays
    winrt::hstring m_name;
    winrt::hstring m_family;
    WaitingEvent<AppServiceConnection, RequestReceivedHandler> m_requestReceived;
    WaitingEvent<AppServiceConnection, ServiceClosedHandler> m_serviceClosed;
};

struct AppServiceConnectionFactory : winrt::implements<AppServiceConnectionFactory, IActivationFactory>
{
    IInspectable ActivateInstance() const;
};

} // namespace sim
