#include "simulator/runtime/Application.h"

#include "simulator/runtime/Framework.h"

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

} // namespace sim
