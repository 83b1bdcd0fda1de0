#pragma once
#include "simulator/runtime/Implements.h"

#include <winrt/Windows.Foundation.h>
#include <winrt/Windows.UI.Xaml.Controls.Primitives.h>
#include <winrt/Windows.UI.Xaml.h>

namespace sim
{

// The factory and the static members of Windows.UI.Xaml.Application.
struct ApplicationFactory
    : Implements<ApplicationFactory, IActivationFactory, Xaml::IApplicationFactory, Xaml::IApplicationStatics>
{
    Xaml::Application CreateInstance(IInspectable const& outer, IInspectable& inner) const;

    Xaml::Application Current() const;

    void Start(Xaml::ApplicationInitializationCallback const& callback) const;

    // Of pages; on the main view's thread alone: RPC_E_WRONG_THREAD elsewhere.
    void LoadComponent(IInspectable const& component, Foundation::Uri const& address,
                       Xaml::Controls::Primitives::ComponentResourceLocation location) const;

    void LoadComponent(IInspectable const& component, Foundation::Uri const& address) const
    {
        LoadComponent(component, address, Xaml::Controls::Primitives::ComponentResourceLocation::Application);
    }
};

} // namespace sim
