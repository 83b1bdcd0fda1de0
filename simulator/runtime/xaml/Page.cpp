#include "simulator/runtime/xaml/Page.h"

#include "simulator/runtime/Framework.h"

namespace sim
{

Xaml::Controls::Page PageFactory::CreateInstance(IInspectable const& outer, IInspectable& inner) const
{
    ThrowIfStruck(L"Page.CreateInstance");
    Framework::Instance().NeedViewThread();
    return winrt::impl::composable_factory<PageBase>::CreateInstance<Xaml::Controls::Page>(outer, inner);
}

} // namespace sim
