#pragma once
#include <array>
#include <string_view>
#include <winrt/Windows.UI.Xaml.Markup.h>

namespace VelmoNotificationClient
{

// The table of the types that the XAML framework may ask the app for: its page, itself, and what the page derives from.
// Does not change once it is built.
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
