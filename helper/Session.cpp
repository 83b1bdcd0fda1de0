#include "helper/Session.h"

#include "service/Messages.h"

#include <winrt/Windows.Foundation.h>

using namespace winrt::Windows::ApplicationModel::AppService;
using namespace winrt::Windows::Foundation;
using namespace winrt::Windows::Foundation::Collections;

namespace helper
{

namespace
{

namespace Messages = VelmoNotificationClient::Messages;

wchar_t const* NameOf(AppServiceClosedStatus status)
{
    switch (status)
    {
    case AppServiceClosedStatus::Completed:
        return L"Completed";
    case AppServiceClosedStatus::Canceled:
        return L"Canceled";
    case AppServiceClosedStatus::ResourceLimitsExceeded:
        return L"ResourceLimitsExceeded";
    default:
        return L"Unknown";
    }
}

std::optional<std::wstring> TextIn(ValueSet const& message, wchar_t const* key)
{
    return message.HasKey(key)
               ? std::optional<std::wstring>(winrt::unbox_value_or<winrt::hstring>(message.Lookup(key), L""))
               : std::nullopt;
}

} // namespace

Session::Session(Listener const& listener)
{
    m_connection.RequestReceived([inbox = m_inbox, listener](auto&&, AppServiceRequestReceivedEventArgs const& args) {
        auto const message = args.Request().Message();
        listener(message);
        std::lock_guard const lock(inbox->mutex);
        inbox->messages.push_back(
            {TextIn(message, Messages::newMessageKey).value_or(L""), TextIn(message, Messages::newCuriKey)});
        inbox->changed.notify_all();
    });
    m_connection.ServiceClosed([inbox = m_inbox](auto&&, AppServiceClosedEventArgs const& args) {
        auto const status = args.Status();
        std::lock_guard const lock(inbox->mutex);
        inbox->closed = status;
        inbox->changed.notify_all();
    });
}

Session::~Session()
{
    try
    {
        m_connection.Close();
    }
    catch (winrt::hresult_error const&)
    {
        // Ignored: the connection ends with the process anyway.
    }
}

auto Session::BeginOpen(std::wstring const& packageFamilyName, std::wstring const& appServiceName)
{
    m_connection.PackageFamilyName(packageFamilyName);
    m_connection.AppServiceName(appServiceName);
    return m_connection.OpenAsync();
}

AppServiceConnectionStatus Session::Open(std::wstring const& packageFamilyName, std::wstring const& appServiceName)
{
    return BeginOpen(packageFamilyName, appServiceName).get();
}

std::optional<AppServiceConnectionStatus> Session::TryOpen(std::wstring const& packageFamilyName,
                                                           std::wstring const& appServiceName,
                                                           std::chrono::milliseconds timeout)
{
    auto const operation = BeginOpen(packageFamilyName, appServiceName);
    return operation.wait_for(timeout) == AsyncStatus::Started ? std::nullopt : std::optional(operation.GetResults());
}

AppServiceResponse Session::Send(ValueSet const& request, std::chrono::milliseconds timeout)
{
    auto const operation = m_connection.SendMessageAsync(request);
    return operation.wait_for(timeout) == AsyncStatus::Started ? nullptr : operation.GetResults();
}

std::optional<Session::Message> Session::Wait(std::chrono::milliseconds timeout)
{
    std::unique_lock lock(m_inbox->mutex);
    auto const hasMessage = [&] { return m_inbox->taken < m_inbox->messages.size(); };
    m_inbox->changed.wait_for(lock, timeout, [&] { return hasMessage() || m_inbox->closed; });
    return hasMessage() ? std::optional(m_inbox->messages[m_inbox->taken++]) : std::nullopt;
}

std::optional<std::wstring> Session::HowItEnded()
{
    std::lock_guard const lock(m_inbox->mutex);
    auto const closed = m_inbox->closed;
    return closed ? std::optional<std::wstring>(NameOf(*closed)) : std::nullopt;
}

std::wstring Session::WaitForEnd()
{
    std::unique_lock lock(m_inbox->mutex);
    m_inbox->changed.wait(lock, [&] { return m_inbox->closed.has_value(); });
    return NameOf(*m_inbox->closed); // NOLINT(bugprone-unchecked-optional-access): the wait ends with a value
}

} // namespace helper
