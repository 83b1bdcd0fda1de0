#pragma once
#include "app/XamlTypeInfoProvider.h"

#include <optional>
#include <winrt/Windows.UI.Xaml.Interop.h>
#include <winrt/Windows.UI.Xaml.Markup.h>

namespace VelmoNotificationClient
{

// Answers the XAML framework's questions about the app's types. Any thread.
struct XamlMetaDataProvider
    : winrt::implements<XamlMetaDataProvider, winrt::Windows::UI::Xaml::Markup::IXamlMetadataProvider>
{
    using IXamlType = winrt::Windows::UI::Xaml::Markup::IXamlType;

    static constexpr wchar_t className[] =
        L"VelmoNotificationClient.VelmoNotificationClient_uwp_XamlTypeInfo.XamlMetaDataProvider";

    winrt::hstring GetRuntimeClassName() const override { return className; }

    // Null for a type that is not the app's. Only the name of the type counts.
    IXamlType GetXamlType(winrt::Windows::UI::Xaml::Interop::TypeName const& type);
    IXamlType GetXamlType(winrt::hstring const& fullName);

    // Empty: the app defines no XML namespace of its own.
    winrt::com_array<winrt::Windows::UI::Xaml::Markup::XmlnsDefinition> GetXmlnsDefinitions() const { return {}; }

  private:
    XamlTypeInfoProvider const& TypeInfo();

    winrt::slim_mutex m_lock;                       // held while the table is built
    std::optional<XamlTypeInfoProvider> m_typeInfo; // built by the first question
};

} // namespace VelmoNotificationClient
