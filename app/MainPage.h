#pragma once
#include <winrt/Windows.UI.Xaml.Controls.h>
#include <winrt/Windows.UI.Xaml.Markup.h>

namespace VelmoNotificationClient
{

// The page that makes the package a XAML app's. Nothing navigates to it; the framework can make one by its name, as an
// activatable class or through XamlMetaDataProvider. For the main view's thread.
struct MainPage
    : winrt::Windows::UI::Xaml::Controls::PageT<MainPage, winrt::Windows::UI::Xaml::Markup::IComponentConnector>
{
    static constexpr wchar_t className[] = L"VelmoNotificationClient.MainPage";

    // Loads the markup. Throws hresult_error when the platform's base or the markup cannot be had.
    MainPage();

    winrt::hstring GetRuntimeClassName() const override { return className; }

    // Loads the markup, once: later calls do nothing. winrt::make calls it, too, after the constructor.
    void InitializeComponent();

    // The loader hands over the elements that the program refers to: there are none.
    void Connect(std::int32_t, winrt::Windows::Foundation::IInspectable const&) const noexcept {}

  private:
    bool m_contentLoaded = false;
};

} // namespace VelmoNotificationClient
