#pragma once
#include <winrt/Windows.UI.Xaml.Controls.h>
#include <winrt/Windows.UI.Xaml.Markup.h>

namespace VelmoNotificationClient
{

// The page that a XAML app needs. Nothing navigates to it; the framework can create one by its name, as an activatable
// class or through XamlMetaDataProvider. UI thread only.
struct MainPage
    : winrt::Windows::UI::Xaml::Controls::PageT<MainPage, winrt::Windows::UI::Xaml::Markup::IComponentConnector>
{
    static constexpr wchar_t className[] = L"VelmoNotificationClient.MainPage";

    // Loads the markup. Throws hresult_error when the platform's base or the markup is not available.
    MainPage();

    winrt::hstring GetRuntimeClassName() const override { return className; }

    // Loads the markup once; later calls do nothing. winrt::make calls it, too, after the constructor.
    void InitializeComponent();

    // Called by the loader for the elements that the program refers to: there are none.
    void Connect(std::int32_t, winrt::Windows::Foundation::IInspectable const&) const noexcept {}

  private:
    bool m_contentLoaded = false;
};

} // namespace VelmoNotificationClient
