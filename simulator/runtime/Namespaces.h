#pragma once
#include <winrt/base.h>

namespace winrt::Windows::ApplicationModel::Activation
{
}

namespace winrt::Windows::UI::Xaml
{
}

namespace sim
{

// The platform's own types, whose names the simulator's implementations share.
namespace Platform = winrt::Windows::ApplicationModel;
namespace Activated = winrt::Windows::ApplicationModel::Activation;
namespace Xaml = winrt::Windows::UI::Xaml;
using winrt::Windows::Foundation::IActivationFactory;
using winrt::Windows::Foundation::IInspectable;

} // namespace sim
