#include "simulator/runtime/Window.h"

#include "simulator/runtime/Framework.h"

namespace sim
{

Window::Window(IInspectable const& content)
{
    // UIElement's own interface is not among the known ones, and any object will do.
    winrt::copy_from_abi(m_content, winrt::get_abi(content));
}

Xaml::Window WindowFactory::Current() const
{
    return StruckByNull(L"Window.Current") ? nullptr : Framework::Instance().CurrentWindow();
}

} // namespace sim
