#pragma once
#include "app/XamlMetaDataProvider.h"

namespace VelmoNotificationClient
{

// The part of App that answers the XAML framework's questions about types. It passes each one to the provider of the
// process, which the first one creates and which is never released. App itself holds no data.
class AppTypes
{
  public:
    static auto GetXamlType(winrt::Windows::UI::Xaml::Interop::TypeName const& type)
    {
        return Provider().GetXamlType(type);
    }

    static auto GetXamlType(winrt::hstring const& fullName) { return Provider().GetXamlType(fullName); }

    static auto GetXmlnsDefinitions() { return Provider().GetXmlnsDefinitions(); }

  private:
    static XamlMetaDataProvider& Provider();
};

} // namespace VelmoNotificationClient
