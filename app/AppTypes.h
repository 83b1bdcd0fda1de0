#pragma once
#include "app/XamlMetaDataProvider.h"

namespace VelmoNotificationClient
{

// The part of App that the XAML framework asks for types: every question goes to one provider, made for the first one.
// For the main view's thread.
class AppTypes
{
  public:
    auto GetXamlType(winrt::Windows::UI::Xaml::Interop::TypeName const& type) { return Provider().GetXamlType(type); }

    auto GetXamlType(winrt::hstring const& fullName) { return Provider().GetXamlType(fullName); }

    auto GetXmlnsDefinitions() { return Provider().GetXmlnsDefinitions(); }

  private:
    XamlMetaDataProvider& Provider();

    winrt::com_ptr<XamlMetaDataProvider> m_provider;
};

} // namespace VelmoNotificationClient
