#pragma once
#include <winrt/Windows.ApplicationModel.Activation.h>
#include <winrt/Windows.UI.Xaml.h>

namespace bench
{

// An app with four services, one for each connection in the order in which they come: three to compare with and the
// product's own. Each answers "GetChannelUri", and nothing else, with the same message.
struct ServiceApp : winrt::Windows::UI::Xaml::ApplicationT<ServiceApp>
{
    enum Service
    {
        Null,           // answers at once
        Plain,          // makes the platform calls that the product makes, in straight code
        PlainWithLines, // writes a bare line wherever the product writes one, too
        Product
    };

    void OnBackgroundActivated(winrt::Windows::ApplicationModel::Activation::BackgroundActivatedEventArgs const& args);

  private:
    int m_connections = 0;
};

} // namespace bench
