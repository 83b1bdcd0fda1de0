#pragma once
#include <functional>
#include <winrt/Windows.Foundation.h>
#include <winrt/Windows.Networking.PushNotifications.h>

namespace VelmoNotificationClient
{

using ChannelRequest =
    winrt::Windows::Foundation::IAsyncOperation<winrt::Windows::Networking::PushNotifications::PushNotificationChannel>;

// Asks the platform for the app's push channel; each time anew, never kept. ended: called when the request has ended,
// well or not, never on the calling thread; its GetResults gives the channel or throws. What leaves it ends the
// process. It is not called for a request that was cancelled, which leaves no trace. Throws hresult_error when the
// request fails at once.
void RequestChannel(std::function<void(ChannelRequest const& request)> const& ended);

// Puts the channel's URI into the app's local settings, under "CURI", whether or not it is there already. writeLine:
// the line that says so, written before it is tried. False when the settings fail; nothing is written, and that is no
// failure, when there are none. storedLine: written after all that, null for none; its failure counts as one of the
// settings. Throws hresult_error when the channel does not give its URI.
bool StoreChannelUri(winrt::Windows::Networking::PushNotifications::PushNotificationChannel const& channel,
                     wchar_t const* writeLine, wchar_t const* storedLine = nullptr);

// What stands under "CURI", as it stands there (a boxed string, if nobody else wrote there). Null when nothing does, or
// when there are no settings. Throws hresult_error.
winrt::Windows::Foundation::IInspectable StoredChannelUri();

} // namespace VelmoNotificationClient
