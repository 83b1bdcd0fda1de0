#include "simulator/runtime/appservice/AppServiceConnection.h"

#include "simulator/base/Overloaded.h"
#include "simulator/protocol/Frames.h"
#include "simulator/runtime/Awaiters.h"
#include "simulator/runtime/Record.h"
#include "simulator/runtime/appservice/AppServiceRequest.h"
#include "simulator/runtime/values/ValueBytes.h"

namespace sim
{

using AppModel::AppService::AppServiceClosedStatus;
using AppModel::AppService::AppServiceConnectionStatus;
using AppModel::AppService::AppServiceResponseStatus;

namespace
{

// What came of a message that was sent. Message: empty when there was no response.
using AppServiceResponse =
    Record<AppService::AppServiceResponse, Interfaces<AppService::IAppServiceResponse>,
           Property<"Status", AppServiceResponseStatus>, Property<"Message", Collections::ValueSet>>;

// What a handler of ServiceClosed gets.
using AppServiceClosedEventArgs =
    Record<AppService::AppServiceClosedEventArgs, Interfaces<AppService::IAppServiceClosedEventArgs>,
           Property<"Status", AppServiceClosedStatus>>;

constexpr auto objectClosed = static_cast<std::int32_t>(0x80000013); // RO_E_CLOSED

AppServiceConnection::Response ResponseOf(AppServiceResponseStatus status, std::string const& set)
{
    return winrt::make<AppServiceResponse>(status, SetFrom(set));
}

} // namespace

// Keeps a connection while it is being opened, and sees to what becomes of it.
class AppServiceConnection::UnopenedUnlessOpened
{
  public:
    explicit UnopenedUnlessOpened(AppServiceConnection& connection) : m_connection(connection.get_strong()) {}
    UnopenedUnlessOpened(UnopenedUnlessOpened const&) = delete;
    UnopenedUnlessOpened& operator=(UnopenedUnlessOpened const&) = delete;
    ~UnopenedUnlessOpened() { m_connection->EndOpening(); }

  private:
    winrt::com_ptr<AppServiceConnection> m_connection;
};

winrt::com_ptr<AppServiceConnection> AppServiceConnection::OfService(std::uint32_t connection, std::wstring_view name)
{
    auto made = winrt::make_self<AppServiceConnection>();
    made->m_end = ConnectionEnd::Service;
    made->m_name = name;
    made->m_state = State::Open;
    made->m_connection = connection;
    made->Attach();
    return made;
}

AppServiceConnection::~AppServiceConnection()
{
    if (m_state == State::Open)
    {
        CloseOpen();
    }
}

winrt::hstring AppServiceConnection::AppServiceName() const
{
    std::lock_guard const lock(m_mutex);
    return m_name;
}

void AppServiceConnection::AppServiceName(winrt::hstring const& value)
{
    std::lock_guard const lock(m_mutex);
    m_name = value;
}

winrt::hstring AppServiceConnection::PackageFamilyName() const
{
    std::lock_guard const lock(m_mutex);
    return m_family;
}

void AppServiceConnection::PackageFamilyName(winrt::hstring const& value)
{
    std::lock_guard const lock(m_mutex);
    m_family = value;
}

Foundation::IAsyncOperation<AppServiceConnectionStatus> AppServiceConnection::OpenAsync()
{
    AsyncFault const fault(L"AppServiceConnection.OpenAsync");
    if (fault.GivesNull())
    {
        return nullptr;
    }
    BeginOpening();
    return fault.Handed(Open(fault));
}

Foundation::IAsyncOperation<AppServiceConnectionStatus> AppServiceConnection::Open(AsyncFault fault)
{
    UnopenedUnlessOpened const self(*this);
    co_await winrt::resume_agile(fault.Begin());
    if (auto const status = fault.Status())
    {
        co_await winrt::resume_background();
        co_return static_cast<AppServiceConnectionStatus>(*status);
    }
    auto const host = m_host.Get();
    if (!host)
    {
        co_return AppServiceConnectionStatus::Unknown;
    }
    MessageRouter::OpeningScope const opening(host->Router());
    OpenConnection const question{std::wstring(AppServiceName()), std::wstring(PackageFamilyName())};
    auto const answer = co_await AnswerOf(*host, question);
    if (answer.status == sim::OpenStatus::Success)
    {
        Opened(answer.connection);
    }
    co_await winrt::resume_agile(fault.End());
    co_return static_cast<AppServiceConnectionStatus>(answer.status);
}

Foundation::IAsyncOperation<AppServiceConnection::Response> AppServiceConnection::SendMessageAsync(
    Collections::ValueSet const& message)
{
    AsyncFault const fault(L"AppServiceConnection.SendMessageAsync");
    if (fault.GivesNull())
    {
        return nullptr;
    }
    CheckOpen();
    return fault.Handed(Send(fault, BytesOf(message ? message : throw winrt::hresult_invalid_argument())));
}

Foundation::IAsyncOperation<AppServiceConnection::Response> AppServiceConnection::Send(AsyncFault fault,
                                                                                       std::string set)
{
    auto const self = get_strong();
    co_await winrt::resume_agile(fault.Begin());
    if (auto const status = fault.Status())
    {
        co_await winrt::resume_background();
        co_return ResponseOf(static_cast<AppServiceResponseStatus>(*status), {});
    }
    auto const host = m_host.Get();
    if (!host)
    {
        co_return ResponseOf(AppServiceResponseStatus::Failure, {});
    }
    if (set.size() > largestSet)
    {
        co_await winrt::resume_background();
        co_return ResponseOf(AppServiceResponseStatus::MessageSizeTooLarge, {});
    }
    SendRequest const question{m_connection, m_end, std::move(set)};
    auto const answer = co_await AnswerOf(*host, question);
    co_await winrt::resume_agile(fault.End());
    co_return ResponseOf(static_cast<AppServiceResponseStatus>(answer.status), answer.set);
}

winrt::event_token AppServiceConnection::RequestReceived(RequestReceivedHandler const& handler)
{
    // Not refused after Close, which may come from another thread between two hooks: then it is never called.
    ThrowIfStruck(L"AppServiceConnection.RequestReceived");
    return m_requestReceived.Add(handler, *this);
}

void AppServiceConnection::RequestReceived(winrt::event_token token)
{
    m_requestReceived.Remove(token);
}

winrt::event_token AppServiceConnection::ServiceClosed(ServiceClosedHandler const& handler)
{
    ThrowIfStruck(L"AppServiceConnection.ServiceClosed");
    if (!handler)
    {
        throw winrt::hresult_invalid_argument();
    }
    // The service's task is cancelled along with this: told once nothing can keep this handler from being called, as
    // the one of the cancellation might, which closes the connection.
    return m_serviceClosed.Add(
        [handler](auto const& self, auto const& args) {
            MessageRouter::ReleaseQueue();
            handler(self, args);
        },
        *this);
}

void AppServiceConnection::ServiceClosed(winrt::event_token token)
{
    m_serviceClosed.Remove(token);
}

void AppServiceConnection::Close()
{
    ThrowIfStruck(L"AppServiceConnection.Close");
    State before{};
    {
        std::lock_guard const lock(m_mutex);
        before = std::exchange(m_state, State::Closed);
    }
    if (before == State::Open)
    {
        CloseOpen();
    }
    m_requestReceived.Clear();
    m_serviceClosed.Clear();
}

void AppServiceConnection::BeginOpening()
{
    CheckNotClosed();
    std::lock_guard const lock(m_mutex);
    if (m_state != State::Unopened)
    {
        throw winrt::hresult_illegal_method_call();
    }
    m_state = State::Opening;
}

// It may have been closed meanwhile.
void AppServiceConnection::Opened(std::uint32_t connection)
{
    auto isClosed = false;
    {
        std::lock_guard const lock(m_mutex);
        m_connection = connection;
        isClosed = m_state == State::Closed;
        m_state = isClosed ? State::Closed : State::Open;
    }
    isClosed ? CloseOpen() : Attach();
}

void AppServiceConnection::EndOpening()
{
    std::lock_guard const lock(m_mutex);
    if (m_state == State::Opening)
    {
        m_state = State::Unopened; // and may be tried again
    }
}

void AppServiceConnection::CheckOpen() const
{
    CheckNotClosed();
    std::lock_guard const lock(m_mutex);
    if (m_state != State::Open)
    {
        throw winrt::hresult_illegal_method_call();
    }
}

void AppServiceConnection::CheckNotClosed() const
{
    std::lock_guard const lock(m_mutex);
    if (m_state == State::Closed)
    {
        throw winrt::hresult_error(objectClosed);
    }
}

void AppServiceConnection::Attach()
{
    if (auto const host = m_host.Get())
    {
        host->Router().AddReceiver(Address::Of(m_end, m_connection), [weak = get_weak()](auto const& message) {
            if (auto const self = weak.get())
            {
                self->Receive(message);
            }
        });
    }
}

void AppServiceConnection::CloseOpen()
{
    if (auto const host = m_host.Get())
    {
        host->Router().RemoveReceiver(Address::Of(m_end, m_connection));
        host->Tell(ConnectionClosed{m_connection, m_end});
    }
}

void AppServiceConnection::Receive(MessageRouter::Message const& message)
{
    std::visit(Overloaded{[this](RequestArrived const& arrived) { Receive(arrived); },
                          [this](OtherEndClosed const& closed) { Receive(closed); },
                          [](auto const&) {}}, // for instances
               message);
}

void AppServiceConnection::Receive(OtherEndClosed const& closed)
{
    auto const status = static_cast<AppServiceClosedStatus>(closed.status);
    m_serviceClosed.RaiseOrWait(*this, [status](AppServiceConnection& self) {
        self.m_serviceClosed.Call(self.get_strong().as<class_type>(), winrt::make<AppServiceClosedEventArgs>(status));
    });
}

// A service that has just been activated may need a while to listen; a caller that does not listen never will.
void AppServiceConnection::Receive(RequestArrived const& arrived)
{
    if (m_end == ConnectionEnd::Caller && !m_requestReceived.HasHandlers())
    {
        m_host.Tell(RequestRefused{arrived.request});
        return;
    }
    m_requestReceived.RaiseOrWait(*this, [arrived](AppServiceConnection& self) { self.RaiseRequest(arrived); });
}

void AppServiceConnection::RaiseRequest(RequestArrived const& arrived)
{
    auto const pending = std::make_shared<PendingRequest>(arrived.request, m_end == ConnectionEnd::Service);
    m_requestReceived.Call(get_strong().as<class_type>(),
                           winrt::make<AppServiceRequestReceivedEventArgs>(pending, SetFrom(arrived.set)));
    pending->HandlersReturned();
}

} // namespace sim
