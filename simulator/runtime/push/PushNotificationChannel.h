#pragma once
#include "simulator/runtime/Implements.h"
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/Runtime.h"

#include <winrt/Windows.Foundation.h>
#include <winrt/Windows.Networking.PushNotifications.h>

namespace sim
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

} // namespace sim
