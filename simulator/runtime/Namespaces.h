#pragma once
#include <winrt/base.h>

namespace winrt::Windows::ApplicationModel::Activation
{
}

namespace winrt::Windows::Foundation::Collections
{
}

namespace winrt::Windows::Networking::PushNotifications
{
}

namespace winrt::Windows::UI::Xaml
{
}

namespace sim
{

// The platform's own types, whose names the simulator's implementations share.
namespace AppModel = winrt::Windows::ApplicationModel;
namespace Activated = winrt::Windows::ApplicationModel::Activation;
namespace Pushes = winrt::Windows::Networking::PushNotifications;
namespace Xaml = winrt::Windows::UI::Xaml;
namespace Foundation = winrt::Windows::Foundation;
namespace Collections = winrt::Windows::Foundation::Collections;
using winrt::Windows::Foundation::IActivationFactory;
using winrt::Windows::Foundation::IInspectable;

} // namespace sim
