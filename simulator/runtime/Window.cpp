#include "simulator/runtime/Factory.h"
#include "simulator/runtime/Framework.h"

namespace sim
{

namespace
{

struct WindowFactory : Implements<WindowFactory, IActivationFactory, Xaml::IWindowStatics>
{
    Xaml::Window Current() const
    {
        return StruckByNull(L"Window.Current") ? nullptr : Framework::Instance().CurrentWindow();
    }
};

} // namespace

IInspectable MakeWindowFactory()
{
    return winrt::make<WindowFactory>();
}

} // namespace sim
