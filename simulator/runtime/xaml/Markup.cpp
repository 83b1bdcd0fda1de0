#include "simulator/runtime/xaml/Markup.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/protocol/Event.h"
#include "simulator/runtime/Runtime.h"
#include "simulator/runtime/xaml/PageMarkup.h"

#include <algorithm>
#include <winrt/Windows.UI.Xaml.Controls.h>

using winrt::Windows::UI::Xaml::Controls::Primitives::ComponentResourceLocation;

namespace sim
{

namespace
{

struct Element : winrt::implements<Element, IInspectable>
{
    explicit Element(std::wstring_view name) : m_className(L"Windows.UI.Xaml.Controls." + std::wstring(name)) {}

    winrt::hstring GetRuntimeClassName() const override { return m_className; }

  private:
    winrt::hstring m_className;
};

std::wstring FileOf(Foundation::Uri const& address)
{
    std::wstring path(address.Path());
    if (address.SchemeName() != L"ms-appx" || !address.Host().empty() || path.size() < 2)
    {
        throw Error(L"no resource of the package");
    }
    std::ranges::replace(path, L'/', L'\\');
    auto file = CurrentHost().PackageFolder() + path;
    if (!FileExists(file))
    {
        throw Error(L"there is no file " + file);
    }
    return file;
}

Xaml::UIElement MakeContent(XmlElement const* content)
{
    return content ? AsElement(winrt::make<Element>(content->name)) : nullptr;
}

} // namespace

Xaml::UIElement AsElement(IInspectable const& object)
{
    Xaml::UIElement element{nullptr};
    winrt::copy_from_abi(element, winrt::get_abi(object));
    return element;
}

void LoadMarkup(IInspectable const& component, Foundation::Uri const& address, ComponentResourceLocation location)
{
    auto const addressDetail = Detail(L"uri", std::wstring(address.AbsoluteUri()));
    try
    {
        auto const page = component.try_as<Xaml::Controls::IUserControl>();
        if (!page || !component.try_as<Xaml::Controls::IPage>())
        {
            throw Error(L"the component is no page");
        }
        auto const root = ReadXml(FileOf(address));
        page.Content(MakeContent(ContentOfPage(root, winrt::get_class_name(component))));
    }
    catch (Error const& error)
    {
        CurrentHost().Report(L"markup-failed", {addressDetail, Detail(L"reason", error.Message())});
        throw winrt::hresult_error(xamlParseFailed, error.Message());
    }
    auto const isApplication = location == ComponentResourceLocation::Application;
    CurrentHost().Report(L"markup-loaded",
                         {addressDetail, Detail(L"resources", isApplication ? L"application" : L"nested")});
}

} // namespace sim
