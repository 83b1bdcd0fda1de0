#pragma once
#include "simulator/runtime/Namespaces.h"

#include <winrt/Windows.Networking.PushNotifications.h>

namespace sim
{

// What a push carries.
struct RawNotification : winrt::implements<RawNotification, Pushes::IRawNotification>
{
    using class_type = Pushes::RawNotification;

    explicit RawNotification(std::wstring_view content) : m_content(content) {}

    winrt::hstring Content() const { return m_content; }

  private:
    winrt::hstring m_content;
};

} // namespace sim
