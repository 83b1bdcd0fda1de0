#include "simulator/runtime/xaml/PageMaker.h"

#include "simulator/base/Text.h"
#include "simulator/protocol/Event.h"
#include "simulator/runtime/PackagedClasses.h"
#include "simulator/runtime/Runtime.h"

#include <winrt/Windows.UI.Xaml.Controls.h>
#include <winrt/Windows.UI.Xaml.Interop.h>
#include <winrt/Windows.UI.Xaml.Markup.h>

namespace sim
{

namespace
{

constexpr auto parseFailed = static_cast<std::int32_t>(0x802B000A); // E_XAMLPARSEFAILED

IInspectable ByActivation(Xaml::Application const&, std::wstring const& className)
{
    return GetPackagedFactory(className).ActivateInstance<IInspectable>();
}

IInspectable ByProvider(Xaml::Application const& application, std::wstring const& className)
{
    auto const type = application.as<Xaml::Markup::IXamlMetadataProvider>().GetXamlType(className);
    if (!type || !type.IsConstructible())
    {
        throw winrt::hresult_error(parseFailed, L"the type " + className + L" is not available");
    }
    return type.ActivateInstance();
}

void Try(Xaml::Application const& application, std::wstring const& className, std::wstring const& wayName,
         IInspectable (*way)(Xaml::Application const&, std::wstring const&))
{
    auto const wayDetail = Detail(L"by", wayName);
    try
    {
        auto const page = way(application, className).as<Xaml::Controls::IPage>();
        CurrentHost().Report(L"page-made", {wayDetail, Detail(L"class", std::wstring(winrt::get_class_name(page)))});
    }
    catch (...)
    {
        auto const result = static_cast<std::uint32_t>(winrt::to_hresult().value);
        CurrentHost().Report(L"page-failed", {wayDetail, Detail(L"class", className), Detail(L"result", Hex(result))});
    }
}

} // namespace

void MakePage(Xaml::Application const& application, std::wstring const& className)
{
    Try(application, className, L"activation", ByActivation);
    Try(application, className, L"provider", ByProvider);
}

} // namespace sim
