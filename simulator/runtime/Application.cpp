#include "simulator/runtime/Factory.h"
#include "simulator/runtime/Framework.h"
#include "simulator/runtime/xaml/Markup.h"

#include <windows.h>
#include <winrt/Windows.ApplicationModel.Core.h>

namespace sim
{

namespace
{

using Xaml::Controls::Primitives::ComponentResourceLocation;

struct ApplicationFactory
    : Implements<ApplicationFactory, IActivationFactory, Xaml::IApplicationFactory, Xaml::IApplicationStatics>
{
    Xaml::Application CreateInstance(IInspectable const& outer, IInspectable& inner) const
    {
        InjectFault(L"Application.CreateInstance");
        auto const application =
            winrt::impl::composable_factory<ApplicationBase>::CreateInstance<Xaml::Application>(outer, inner);
        auto* const base = winrt::get_self<ApplicationBase>(application.as<Xaml::IApplication>());
        Framework::Instance().Adopt(outer ? outer : application, *base);
        return application;
    }

    Xaml::Application Current() const { return Framework::Instance().CurrentApplication(); }

    void Start(Xaml::ApplicationInitializationCallback const& callback) const
    {
        InjectFault(L"Application.Start");
        winrt::check_hresult(Framework::Instance().Run(callback));
    }

    // Of pages; on the UI thread alone: RPC_E_WRONG_THREAD elsewhere.
    void LoadComponent(IInspectable const& component, Foundation::Uri const& address,
                       ComponentResourceLocation location = ComponentResourceLocation::Application) const
    {
        InjectFault(L"Application.LoadComponent");
        Framework::Instance().NeedUiThread();
        if (!component || !address)
        {
            throw winrt::hresult_error(E_POINTER);
        }
        LoadMarkup(component, address, location);
    }
};

struct WindowFactory : Implements<WindowFactory, IActivationFactory, Xaml::IWindowStatics>
{
    Xaml::Window Current() const
    {
        return InjectFault(L"Window.Current") ? nullptr : Framework::Instance().CurrentWindow();
    }
};

struct CoreApplicationFactory : Implements<CoreApplicationFactory, IActivationFactory, AppModel::Core::ICoreApplication,
                                           AppModel::Core::ICoreApplicationExit>
{
    // Ends the app without Suspending. Returns before the end, which comes when the UI thread is free.
    void Exit() const
    {
        InjectFault(L"CoreApplication.Exit");
        CurrentHost().Exit();
    }
};

} // namespace

IInspectable MakeApplicationFactory()
{
    return winrt::make<ApplicationFactory>();
}

IInspectable MakeWindowFactory()
{
    return winrt::make<WindowFactory>();
}

IInspectable MakeCoreApplicationFactory()
{
    return winrt::make<CoreApplicationFactory>();
}

} // namespace sim
