#include "simulator/runtime/Window.h"

#include "simulator/runtime/Framework.h"

namespace sim
{

Xaml::Window WindowFactory::Current() const
{
    return StruckByNull(L"Window.Current") ? nullptr : Framework::Instance().CurrentWindow();
}

} // namespace sim
