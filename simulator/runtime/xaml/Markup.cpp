#include "simulator/runtime/xaml/Markup.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/XmlElement.h"
#include "simulator/protocol/Event.h"
#include "simulator/runtime/Runtime.h"

#include <algorithm>
#include <winrt/Windows.UI.Xaml.Controls.h>

using winrt::Windows::UI::Xaml::Controls::Primitives::ComponentResourceLocation;

namespace sim
{

namespace
{

constexpr wchar_t presentation[] = L"http://schemas.microsoft.com/winfx/2006/xaml/presentation";
constexpr std::wstring_view knownElements[] = {L"Grid", L"StackPanel", L"TextBlock"};

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

void CheckRoot(XmlElement const& root, std::wstring const& className)
{
    if (root.namespaceUri != presentation || root.name != L"Page")
    {
        throw Error(L"its root is no <Page> of " + std::wstring(presentation));
    }
    auto const named = root.AttributeValue(L"Class");
    if (named && *named != className)
    {
        throw Error(L"it is of the class " + *named + L", not of " + className);
    }
    if (root.children.size() > 1)
    {
        throw Error(L"a <Page> has one content");
    }
}

void CheckElement(XmlElement const& element)
{
    if (element.namespaceUri != presentation ||
        std::ranges::find(knownElements, element.name) == std::end(knownElements))
    {
        throw Error(L"there is no element <" + element.name + L">");
    }
    std::ranges::for_each(element.children, CheckElement);
}

Xaml::UIElement MakeContent(XmlElement const& root)
{
    if (root.children.empty())
    {
        return nullptr;
    }
    CheckElement(root.children.front());
    return AsElement(winrt::make<Element>(root.children.front().name));
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
        CheckRoot(root, std::wstring(winrt::get_class_name(component)));
        page.Content(MakeContent(root));
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
