#include "simulator/runtime/push/PushNotificationChannelManager.h"

#include "simulator/runtime/AsyncFault.h"
#include "simulator/runtime/Awaiters.h"
#include "simulator/runtime/HostReference.h"
#include "simulator/runtime/Runtime.h"

namespace sim
{

namespace
{

// The app's channel, as it was when it was asked for.
struct PushNotificationChannel : Implements<PushNotificationChannel, Pushes::IPushNotificationChannel>
{
    using class_type = Pushes::PushNotificationChannel;

    PushNotificationChannel(std::wstring_view uri, Foundation::DateTime expiration)
        : m_uri(uri), m_expiration(expiration)
    {
    }

    winrt::hstring Uri() const
    {
        ThrowIfStruck(L"PushNotificationChannel.Uri");
        return m_uri;
    }

    Foundation::DateTime ExpirationTime() const noexcept { return m_expiration; }

    // Pushes come to the background task alone.
  private:
    winrt::hstring m_uri;
    Foundation::DateTime m_expiration;
};

Foundation::IAsyncOperation<Pushes::PushNotificationChannel> Create(AsyncFault fault, HostReference process)
{
    co_await winrt::resume_agile(fault.Begin());
    auto const host = process.Get();
    if (!host)
    {
        throw winrt::hresult_canceled();
    }
    CreateChannel const question;
    auto const answer = co_await AnswerOf(*host, question);
    winrt::check_hresult(answer.result);
    co_await winrt::resume_agile(fault.End());
    co_return winrt::make<PushNotificationChannel>(answer.uri,
                                                   Foundation::DateTime(Foundation::TimeSpan(answer.expiry)));
}

} // namespace

Foundation::IAsyncOperation<Pushes::PushNotificationChannel> PushNotificationChannelManagerFactory::
    CreatePushNotificationChannelForApplicationAsync() const
{
    AsyncFault const fault(L"PushNotificationChannelManager.CreatePushNotificationChannelForApplicationAsync");
    return fault.GivesNull() ? nullptr : fault.Handed(Create(fault, HostReference()));
}

} // namespace sim
