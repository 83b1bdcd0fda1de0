#include "simulator/runtime/appservice/AppServiceConnection.h"

#include "simulator/base/Overloaded.h"
#include "simulator/runtime/AsyncCall.h"
#include "simulator/runtime/BufferedEvent.h"
#include "simulator/runtime/Factory.h"
#include "simulator/runtime/Record.h"
#include "simulator/runtime/appservice/AppServiceRequest.h"
#include "simulator/runtime/values/ValueBytes.h"

namespace sim
{

namespace
{

using AppModel::AppService::AppServiceClosedStatus;
using AppModel::AppService::AppServiceConnectionStatus;
using AppModel::AppService::AppServiceResponseStatus;

// The outcome of a request. Message: empty when there was no response.
using AppServiceResponse =
    Record<AppService::AppServiceResponse, Interfaces<AppService::IAppServiceResponse>,
           Property<"Status", AppServiceResponseStatus>, Property<"Message", Collections::ValueSet>>;

// The arguments of ServiceClosed.
using AppServiceClosedEventArgs =
    Record<AppService::AppServiceClosedEventArgs, Interfaces<AppService::IAppServiceClosedEventArgs>,
           Property<"Status", AppServiceClosedStatus>>;

constexpr auto objectClosed = static_cast<std::int32_t>(0x80000013); // RO_E_CLOSED

// One end of a connection. The caller's end closes with its last reference.
struct AppServiceConnection : Implements<AppServiceConnection, AppService::IAppServiceConnection,
                                         AppService::IAppServiceConnection2, Foundation::IClosable>
{
    using class_type = AppService::AppServiceConnection;
    using Response = AppService::AppServiceResponse;
    using RequestReceivedHandler =
        Foundation::TypedEventHandler<class_type, AppService::AppServiceRequestReceivedEventArgs>;
    using ServiceClosedHandler = Foundation::TypedEventHandler<class_type, AppService::AppServiceClosedEventArgs>;

    // A caller's end that is not open yet.
    AppServiceConnection() = default;

    // The service's end; Attach follows.
    AppServiceConnection(std::uint32_t connection, std::wstring_view service)
        : m_end(ConnectionEnd::Service), m_state(State::Open), m_connection(connection), m_name(service)
    {
    }

    AppServiceConnection(AppServiceConnection const&) = delete;
    AppServiceConnection& operator=(AppServiceConnection const&) = delete;

    ~AppServiceConnection() override
    {
        if (m_state == State::Open)
        {
            CloseOpen();
        }
    }

    winrt::hstring AppServiceName() const { return Read(m_name); }

    void AppServiceName(winrt::hstring const& value) { Write(m_name, value); }

    winrt::hstring PackageFamilyName() const { return Read(m_family); }

    void PackageFamilyName(winrt::hstring const& value) { Write(m_family, value); }

    // On an end that is not open; again after a failure.
    Foundation::IAsyncOperation<AppServiceConnectionStatus> OpenAsync()
    {
        AsyncFault const fault(L"AppServiceConnection.OpenAsync");
        if (fault.GivesNull())
        {
            return nullptr;
        }
        Change(State::Unopened, State::Opening);
        return fault.Handed(Open(fault));
    }

    // Ends when the other end has completed the request. Throws RO_E_CLOSED after Close, E_ILLEGAL_METHOD_CALL when it
    // was not opened.
    Foundation::IAsyncOperation<Response> SendMessageAsync(Collections::ValueSet const& message)
    {
        AsyncFault const fault(L"AppServiceConnection.SendMessageAsync");
        if (fault.GivesNull())
        {
            return nullptr;
        }
        Change(State::Open, State::Open);
        auto set = BytesOf(message ? message : throw winrt::hresult_invalid_argument());
        auto const status = KnownStatus(fault, m_host, set);
        // The operation keeps this end.
        auto const responseIn = [self = get_strong()](ResponseGiven const& given) {
            return ResponseOf(static_cast<AppServiceResponseStatus>(given.status), given.set);
        };
        SendRequest request{m_connection, m_end, std::move(set)};
        auto known = status ? std::optional(ResponseOf(*status, {})) : std::nullopt;
        return fault.Handed(AskPlatform<Foundation::IAsyncOperation<Response>>(fault, m_host, std::move(request),
                                                                               responseIn, std::move(known)));
    }

    // Not refused after Close, which may come from another thread between two subscriptions: then it is never called.
    winrt::event_token RequestReceived(RequestReceivedHandler const& handler)
    {
        InjectFault(L"AppServiceConnection.RequestReceived");
        return m_requestReceived.Add(handler, *this);
    }

    void RequestReceived(winrt::event_token token) { m_requestReceived.Remove(token); }

    // The service's task is cancelled along with this: told once nothing can keep this handler from being called, as
    // the one of the cancellation might, which closes the connection.
    winrt::event_token ServiceClosed(ServiceClosedHandler const& handler)
    {
        InjectFault(L"AppServiceConnection.ServiceClosed");
        if (!handler)
        {
            throw winrt::hresult_invalid_argument();
        }
        return m_serviceClosed.Add(
            [handler](auto const& self, auto const& args) {
                MessageRouter::ReleaseQueue();
                handler(self, args);
            },
            *this);
    }

    void ServiceClosed(winrt::event_token token) { m_serviceClosed.Remove(token); }

    // Afterwards no event is raised.
    void Close()
    {
        InjectFault(L"AppServiceConnection.Close");
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

    // From here on it receives messages.
    void Attach()
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

  private:
    enum class State
    {
        Unopened,
        Opening,
        Open,
        Closed
    };

    // Keeps a connection while it is being opened. One that is not open afterwards may be tried again.
    class OpeningAttempt
    {
      public:
        explicit OpeningAttempt(AppServiceConnection& connection) : m_connection(connection.get_strong()) {}
        OpeningAttempt(OpeningAttempt const&) = delete;
        OpeningAttempt& operator=(OpeningAttempt const&) = delete;

        ~OpeningAttempt()
        {
            std::lock_guard const lock(m_connection->m_mutex);
            if (m_connection->m_state == State::Opening)
            {
                m_connection->m_state = State::Unopened;
            }
        }

      private:
        winrt::com_ptr<AppServiceConnection> m_connection;
    };

    Foundation::IAsyncOperation<AppServiceConnectionStatus> Open(AsyncFault fault)
    {
        OpeningAttempt const attempt(*this);
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
        if (answer.status == OpenStatus::Success)
        {
            Opened(answer.connection);
        }
        co_await winrt::resume_agile(fault.End());
        co_return static_cast<AppServiceConnectionStatus>(answer.status);
    }

    // It may have been closed meanwhile.
    void Opened(std::uint32_t connection)
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

    void CloseOpen()
    {
        if (auto const host = m_host.Get())
        {
            host->Router().RemoveReceiver(Address::Of(m_end, m_connection));
            host->Tell(ConnectionClosed{m_connection, m_end});
        }
    }

    static Response ResponseOf(AppServiceResponseStatus status, std::string const& set)
    {
        return winrt::make<AppServiceResponse>(status, SetFrom(set));
    }

    void Receive(MessageRouter::Message const& message)
    {
        std::visit(Overloaded{[this](RequestArrived const& arrived) { Receive(arrived); },
                              [this](OtherEndClosed const& closed) { Receive(closed); },
                              [](auto const&) {}}, // for instances
                   message);
    }

    void Receive(OtherEndClosed const& closed)
    {
        auto const status = static_cast<AppServiceClosedStatus>(closed.status);
        m_serviceClosed.RaiseOrWait(*this, [status](AppServiceConnection& self) {
            self.m_serviceClosed.Call(self.get_strong().as<class_type>(),
                                      winrt::make<AppServiceClosedEventArgs>(status));
        });
    }

    // A new service may add its handler later; a caller without a handler refuses requests.
    void Receive(RequestArrived const& arrived)
    {
        if (m_end == ConnectionEnd::Caller && !m_requestReceived.HasHandlers())
        {
            m_host.Tell(RequestRefused{arrived.request});
            return;
        }
        m_requestReceived.RaiseOrWait(*this, [arrived](AppServiceConnection& self) {
            HandleRequest(arrived, self.m_end == ConnectionEnd::Service, [&self](auto const& args) {
                self.m_requestReceived.Call(self.get_strong().as<class_type>(), args);
            });
        });
    }

    // Throws RO_E_CLOSED when it is closed, and E_ILLEGAL_METHOD_CALL when it is in another state than expected.
    void Change(State expected, State next)
    {
        std::lock_guard const lock(m_mutex);
        if (m_state == State::Closed)
        {
            throw winrt::hresult_error(objectClosed);
        }
        if (m_state != expected)
        {
            throw winrt::hresult_illegal_method_call();
        }
        m_state = next;
    }

    winrt::hstring Read(winrt::hstring const& member) const
    {
        std::lock_guard const lock(m_mutex);
        return member;
    }

    void Write(winrt::hstring& member, winrt::hstring const& value)
    {
        std::lock_guard const lock(m_mutex);
        member = value;
    }

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

} // namespace

AppService::AppServiceConnection MakeServiceEnd(std::uint32_t connection, std::wstring_view service)
{
    auto const made = winrt::make_self<AppServiceConnection>(connection, service);
    made->Attach();
    return made.as<AppServiceConnection::class_type>();
}

IInspectable MakeAppServiceConnectionFactory()
{
    return DefaultFactory<AppServiceConnection>::Make();
}

} // namespace sim
