#pragma once
#include <array>
#include <string_view>
#include <winrt/Windows.UI.Xaml.Markup.h>

namespace VelmoNotificationClient
{

// The types that the XAML framework may ask the app for: its page, the app itself, and the bases of the page.
// Immutable.
class XamlTypeInfoProvider
{
  public:
    XamlTypeInfoProvider();

    // The same object each time; null for a name that is not in the table. Names are compared exactly.
    winrt::Windows::UI::Xaml::Markup::IXamlType GetXamlTypeByName(std::wstring_view fullName) const;

  private:
    struct Entry
    {
        std::wstring_view fullName;
        winrt::Windows::UI::Xaml::Markup::IXamlType type;
    };

    std::array<Entry, 4> m_types;
};

} // namespace VelmoNotificationClient
