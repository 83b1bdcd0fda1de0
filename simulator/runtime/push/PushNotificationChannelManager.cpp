#include "simulator/runtime/AsyncCall.h"
#include "simulator/runtime/Factory.h"
#include "simulator/runtime/Record.h"

#include <winrt/Windows.Networking.PushNotifications.h>

namespace sim
{

namespace
{

// The app's channel, as it was when it was asked for. Pushes come to the background task alone.
using PushNotificationChannel =
    Record<Pushes::PushNotificationChannel, Interfaces<Pushes::IPushNotificationChannel>,
           Property<"Uri", winrt::hstring>, Property<"ExpirationTime", Foundation::DateTime>>;

Pushes::PushNotificationChannel ChannelIn(ChannelCreated const& answer)
{
    winrt::check_hresult(answer.result);
    return winrt::make<PushNotificationChannel>(winrt::hstring(answer.uri),
                                                Foundation::DateTime(Foundation::TimeSpan(answer.expiry)));
}

struct PushNotificationChannelManagerFactory : Implements<PushNotificationChannelManagerFactory, IActivationFactory,
                                                          Pushes::IPushNotificationChannelManagerStatics>
{
    // The existing channel, or a new one.
    Foundation::IAsyncOperation<Pushes::PushNotificationChannel> CreatePushNotificationChannelForApplicationAsync()
        const
    {
        AsyncFault const fault(L"PushNotificationChannelManager.CreatePushNotificationChannelForApplicationAsync");
        return fault.GivesNull()
                   ? nullptr
                   : fault.Handed(AskPlatform<Foundation::IAsyncOperation<Pushes::PushNotificationChannel>>(
                         fault, HostReference(), CreateChannel(), ChannelIn));
    }

    NotImplemented CreatePushNotificationChannelForApplicationAsync(winrt::hstring const&) const { return {}; }
};

} // namespace

IInspectable MakePushNotificationChannelManagerFactory()
{
    return winrt::make<PushNotificationChannelManagerFactory>();
}

} // namespace sim
