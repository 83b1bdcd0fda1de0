#include "simulator/runtime/xaml/PageMarkup.h"

#include "simulator/base/Error.h"

#include <algorithm>

namespace sim
{

namespace
{

constexpr wchar_t presentation[] = L"http://schemas.microsoft.com/winfx/2006/xaml/presentation";
constexpr std::wstring_view knownElements[] = {L"Grid", L"StackPanel", L"TextBlock"};

void CheckRoot(XmlElement const& root, std::wstring_view className)
{
    if (root.namespaceUri != presentation || root.name != L"Page")
    {
        throw Error(L"its root is no <Page> of " + std::wstring(presentation));
    }
    auto const named = root.AttributeValue(L"Class");
    if (named && *named != className)
    {
        throw Error(L"it is of the class " + *named + L", not of " + std::wstring(className));
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

} // namespace

XmlElement const* ContentOfPage(XmlElement const& root, std::wstring_view className)
{
    CheckRoot(root, className);
    if (root.children.empty())
    {
        return nullptr;
    }
    CheckElement(root.children.front());
    return &root.children.front();
}

} // namespace sim
