#include "simulator/runtime/xaml/Page.h"

#include "simulator/base/Text.h"
#include "simulator/protocol/Event.h"
#include "simulator/runtime/Factory.h"
#include "simulator/runtime/Framework.h"
#include "simulator/runtime/PackagedClasses.h"
#include "simulator/runtime/xaml/Markup.h"

#include <winrt/Windows.UI.Xaml.Controls.h>
#include <winrt/Windows.UI.Xaml.Interop.h>
#include <winrt/Windows.UI.Xaml.Markup.h>
#include <winrt/Windows.UI.Xaml.Navigation.h>

namespace sim
{

namespace
{

// The platform's half of a page: the inner object that the app's own class is composed over. It is shown nowhere.
struct PageBase : Implements<PageBase, Xaml::Controls::IPage, Xaml::Controls::IPageOverrides,
                             Xaml::Controls::IUserControl, winrt::composable>
{
    using class_type = Xaml::Controls::Page;

    Xaml::UIElement Content() const { return m_content; }

    void Content(Xaml::UIElement const& value) { m_content = value; }

    void OnNavigatedFrom(auto const&...) const noexcept {}
    void OnNavigatedTo(auto const&...) const noexcept {}
    void OnNavigatingFrom(auto const&...) const noexcept {}

  private:
    Xaml::UIElement m_content{nullptr};
};

struct PageFactory : Implements<PageFactory, IActivationFactory, Xaml::Controls::IPageFactory>
{
    // On the UI thread alone: RPC_E_WRONG_THREAD elsewhere.
    Xaml::Controls::Page CreateInstance(IInspectable const& outer, IInspectable& inner) const
    {
        InjectFault(L"Page.CreateInstance");
        Framework::Instance().NeedUiThread();
        return winrt::impl::composable_factory<PageBase>::CreateInstance<Xaml::Controls::Page>(outer, inner);
    }
};

IInspectable ByActivation(Xaml::Application const&, std::wstring const& className)
{
    return GetPackagedFactory(className).ActivateInstance<IInspectable>();
}

IInspectable ByProvider(Xaml::Application const& application, std::wstring const& className)
{
    auto const type = application.as<Xaml::Markup::IXamlMetadataProvider>().GetXamlType(className);
    if (!type || !type.IsConstructible())
    {
        throw winrt::hresult_error(xamlParseFailed, L"the type " + className + L" is not available");
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

IInspectable MakePageFactory()
{
    return winrt::make<PageFactory>();
}

} // namespace sim
