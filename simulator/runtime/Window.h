#pragma once
#include "simulator/runtime/Implements.h"
#include "simulator/runtime/Runtime.h"

#include <winrt/Windows.Foundation.h>
#include <winrt/Windows.UI.Core.h>
#include <winrt/Windows.UI.Xaml.h>

namespace sim
{

// The window of a foreground app, which shows nothing.
struct Window : Implements<Window, Xaml::IWindow>
{
    using class_type = Xaml::Window;

    // content: null, or what it holds from the start.
    explicit Window(IInspectable const& content);

    Xaml::UIElement Content() const
    {
        ThrowIfStruck(L"Window.Content");
        return m_content;
    }

    void Content(Xaml::UIElement const& value) { m_content = value; }

    bool Visible() const noexcept
    {
        return false; // until it is activated, which is not served
    }

  private:
    Xaml::UIElement m_content{nullptr};
};

// The static members of Windows.UI.Xaml.Window.
struct WindowFactory : Implements<WindowFactory, IActivationFactory, Xaml::IWindowStatics>
{
    Xaml::Window Current() const;
};

} // namespace sim
