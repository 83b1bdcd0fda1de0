#pragma once
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/Unserved.h"

#include <winrt/Windows.Foundation.h>
#include <winrt/Windows.UI.Xaml.h>

namespace sim
{

// The factory and the static members of Windows.UI.Xaml.Application.
struct ApplicationFactory
    : winrt::implements<ApplicationFactory, IActivationFactory, Xaml::IApplicationFactory, Xaml::IApplicationStatics>
{
    Unserved ActivateInstance() const
    {
        return {}; // it is made by composition alone
    }

    Xaml::Application CreateInstance(IInspectable const& outer, IInspectable& inner) const;

    Xaml::Application Current() const;

    void Start(Xaml::ApplicationInitializationCallback const& callback) const;

    template <typename... T>
    Unserved LoadComponent(T const&...) const
    {
        return {};
    }
};

} // namespace sim
