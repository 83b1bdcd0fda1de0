#include "app/XamlTypeInfoProvider.h"

#include "app/App.h"
#include "app/MainPage.h"
#include "app/XamlType.h"

#include <algorithm>

using namespace winrt::Windows::UI::Xaml;
using winrt::Windows::Foundation::IInspectable;

namespace VelmoNotificationClient
{

namespace
{

IInspectable MakeMainPage()
{
    return winrt::make<MainPage>();
}

} // namespace

XamlTypeInfoProvider::XamlTypeInfoProvider()
{
    constexpr auto userControlName = winrt::name_of<Controls::UserControl>();
    constexpr auto pageName = winrt::name_of<Controls::Page>();
    auto const add = [](std::wstring_view fullName, Markup::IXamlType const& baseType, XamlType::Activate activate) {
        return Entry{fullName, winrt::make<XamlType>(winrt::hstring(fullName), baseType, activate)};
    };
    auto const userControl = add(userControlName, nullptr, nullptr);
    auto const page = add(pageName, userControl.type, nullptr);
    // There is one App, created by main.
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): the entries own them
    m_types = {add(MainPage::className, page.type, MakeMainPage), add(App::className, nullptr, nullptr), page,
               userControl};
}

Markup::IXamlType XamlTypeInfoProvider::GetXamlTypeByName(std::wstring_view fullName) const
{
    auto const* const found = std::ranges::find(m_types, fullName, &Entry::fullName);
    return found == m_types.end() ? nullptr : found->type;
}

} // namespace VelmoNotificationClient
