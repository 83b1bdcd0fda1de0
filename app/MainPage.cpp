#include "app/MainPage.h"

#include <winrt/Windows.Foundation.h>
#include <winrt/Windows.UI.Xaml.Controls.Primitives.h>
#include <winrt/Windows.UI.Xaml.h>

using namespace winrt::Windows::Foundation;
using namespace winrt::Windows::UI::Xaml;

namespace VelmoNotificationClient
{

MainPage::MainPage()
{
    InitializeComponent();
}

void MainPage::InitializeComponent()
{
    if (m_contentLoaded)
    {
        return;
    }
    m_contentLoaded = true;
    Application::LoadComponent(*this, Uri(L"ms-appx:///MainPage.xaml"),
                               Controls::Primitives::ComponentResourceLocation::Application);
}

} // namespace VelmoNotificationClient
