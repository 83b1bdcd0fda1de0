#pragma once
#include "simulator/runtime/Namespaces.h"
#include "simulator/runtime/NotImplemented.h"
#include "simulator/runtime/Runtime.h"

#include <winrt/Windows.Foundation.h>
#include <winrt/Windows.UI.Xaml.Controls.h>
#include <winrt/Windows.UI.Xaml.Navigation.h>

namespace sim
{

// The platform's half of a page: the inner object that the app's own class is composed over. It is shown nowhere.
struct PageBase : winrt::implements<PageBase, Xaml::Controls::IPage, Xaml::Controls::IPageOverrides,
                                    Xaml::Controls::IUserControl, winrt::composable>
{
    using class_type = Xaml::Controls::Page;

    Xaml::UIElement Content() const { return m_content; }

    void Content(Xaml::UIElement const& value) { m_content = value; }

    template <typename... T>
    void OnNavigatedFrom(T const&...) const noexcept
    {
    }

    template <typename... T>
    void OnNavigatedTo(T const&...) const noexcept
    {
    }

    template <typename... T>
    void OnNavigatingFrom(T const&...) const noexcept
    {
    }

    template <typename... T>
    NotImplemented Frame(T const&...) const
    {
        return {};
    }

    template <typename... T>
    NotImplemented NavigationCacheMode(T const&...) const
    {
        return {};
    }

    template <typename... T>
    NotImplemented TopAppBar(T const&...) const
    {
        return {};
    }

    template <typename... T>
    NotImplemented BottomAppBar(T const&...) const
    {
        return {};
    }

  private:
    Xaml::UIElement m_content{nullptr};
};

struct PageFactory : winrt::implements<PageFactory, IActivationFactory, Xaml::Controls::IPageFactory>
{
    NotImplemented ActivateInstance() const
    {
        return {}; // it is made by composition alone
    }

    // On the main view's thread alone: RPC_E_WRONG_THREAD elsewhere.
    Xaml::Controls::Page CreateInstance(IInspectable const& outer, IInspectable& inner) const;
};

} // namespace sim
