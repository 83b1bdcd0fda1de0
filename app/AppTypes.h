#pragma once
#include "app/XamlMetaDataProvider.h"

namespace VelmoNotificationClient
{

// The part of App that the XAML framework asks for types: every question goes to the process's one provider, made for
// the first one and never released. App itself holds nothing.
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
