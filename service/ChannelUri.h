#pragma once
#include "service/NotNull.h"
#include "service/WhenEnded.h"

#include <utility>
#include <winrt/Windows.Foundation.h>
#include <winrt/Windows.Networking.PushNotifications.h>

namespace VelmoNotificationClient
{

using ChannelRequest =
    winrt::Windows::Foundation::IAsyncOperation<winrt::Windows::Networking::PushNotifications::PushNotificationChannel>;

// Requests the app's push channel from the platform; the channel is not cached. Calls ended(request) when the request
// has completed or failed, never on the calling thread; the request's GetResults returns the channel or throws. An
// exception that leaves `ended` ends the process. It is not called for a cancelled request, which leaves no trace.
// Throws hresult_error when the request fails at once.
template <typename Ended>
void RequestChannel(Ended ended)
{
    using winrt::Windows::Foundation::AsyncStatus;
    using winrt::Windows::Networking::PushNotifications::PushNotificationChannelManager;

    auto const request = NotNull(PushNotificationChannelManager::CreatePushNotificationChannelForApplicationAsync());
    WhenEnded(request, [ended = std::move(ended)](ChannelRequest const& operation, AsyncStatus status) {
        if (status != AsyncStatus::Canceled)
        {
            ended(operation);
        }
    });
}

// Stores the channel's URI in the app's local settings, under "CURI", whether or not it is stored already. writeLine:
// the log line for that, written before the attempt. False when the settings fail. Without settings nothing is stored,
// and that is no failure. storedLine: a log line written afterwards, null for none; its failure counts as one of the
// settings. Throws hresult_error when the channel does not return its URI.
bool StoreChannelUri(winrt::Windows::Networking::PushNotifications::PushNotificationChannel const& channel,
                     wchar_t const* writeLine, wchar_t const* storedLine = nullptr);

// The value under "CURI" (a boxed string, unless another program has written it). Null when there is none, or no
// settings. Throws hresult_error.
winrt::Windows::Foundation::IInspectable StoredChannelUri();

} // namespace VelmoNotificationClient
