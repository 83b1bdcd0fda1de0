#pragma once
#include <winrt/base.h>

namespace winrt::Windows::ApplicationModel::Activation
{
}

namespace winrt::Windows::ApplicationModel::AppService
{
}

namespace winrt::Windows::ApplicationModel::Background
{
}

namespace winrt::Windows::Foundation::Collections
{
}

namespace winrt::Windows::Networking::PushNotifications
{
}

namespace winrt::Windows::Storage
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
namespace AppService = winrt::Windows::ApplicationModel::AppService;
namespace Background = winrt::Windows::ApplicationModel::Background;
namespace Pushes = winrt::Windows::Networking::PushNotifications;
namespace Storage = winrt::Windows::Storage;
namespace Xaml = winrt::Windows::UI::Xaml;
namespace Foundation = winrt::Windows::Foundation;
namespace Collections = winrt::Windows::Foundation::Collections;
using winrt::Windows::Foundation::IActivationFactory;
using winrt::Windows::Foundation::IInspectable;

} // namespace sim
