#include "simulator/runtime/Application.h"

#include "simulator/runtime/Framework.h"
#include "simulator/runtime/xaml/Markup.h"

#include <windows.h>

namespace sim
{

Xaml::Application ApplicationFactory::CreateInstance(IInspectable const& outer, IInspectable& inner) const
{
    ThrowIfStruck(L"Application.CreateInstance");
    auto const application =
        winrt::impl::composable_factory<ApplicationBase>::CreateInstance<Xaml::Application>(outer, inner);
    auto* const base = winrt::get_self<ApplicationBase>(application.as<Xaml::IApplication>());
    Framework::Instance().Adopt(outer ? outer : application, *base);
    return application;
}

Xaml::Application ApplicationFactory::Current() const
{
    return Framework::Instance().CurrentApplication();
}

void ApplicationFactory::Start(Xaml::ApplicationInitializationCallback const& callback) const
{
    ThrowIfStruck(L"Application.Start");
    winrt::check_hresult(Framework::Instance().Run(callback));
}

void ApplicationFactory::LoadComponent(IInspectable const& component, Foundation::Uri const& address,
                                       Xaml::Controls::Primitives::ComponentResourceLocation location) const
{
    ThrowIfStruck(L"Application.LoadComponent");
    Framework::Instance().NeedViewThread();
    if (!component || !address)
    {
        throw winrt::hresult_error(E_POINTER);
    }
    LoadMarkup(component, address, location);
}

} // namespace sim
