// XML files and pages' markup. Any bytes are read or refused with an Error. An element written as XML comes back as it
// was, and a page has its content where the rules of markup allow it.
#include "fuzz/Demand.h"
#include "fuzz/windows/WrittenXml.h"
#include "simulator/base/Error.h"
#include "simulator/runtime/xaml/PageMarkup.h"

#include <algorithm>
#include <cstdio>

using namespace fuzz;
using sim::XmlElement;

namespace
{

constexpr wchar_t presentation[] = L"http://schemas.microsoft.com/winfx/2006/xaml/presentation";

// No white space at its ends, where the reader takes it for the space between elements.
std::wstring SomeText(Choices& choices)
{
    auto const text = choices.Text(4, L"a b<&>]'\"\u00FC\u20AC");
    return text.empty() || choices.Flag() ? std::wstring() : L"[" + text + L"\U0001D11E";
}

XmlElement SomeElement(Choices& choices, int depth)
{
    static constexpr std::array<std::wstring_view, 8> names = {L"Grid", L"TextBlock", L"Page", L"StackPanel",
                                                               L"a",    L"b-1",       L"_",    L"\u00E9t\u00E9"};
    static constexpr std::array<std::wstring_view, 3> attributes = {L"Class", L"x", L"\u00FC.1"};
    static constexpr std::array<std::wstring_view, 4> namespaces = {presentation, presentation, L"", L"urn:a&b"};
    XmlElement element;
    element.namespaceUri = choices.OneOf(namespaces);
    element.name = choices.OneOf(names);
    element.text = SomeText(choices);
    for (auto const name : attributes)
    {
        if (choices.Below(3) == 1)
        {
            element.attributes.push_back({std::wstring(name), choices.Text(4, L"a b<&>'\"\u20AC")});
        }
    }
    for (auto count = depth > 0 ? choices.Below(4) : 0; count > 0; --count)
    {
        element.children.push_back(SomeElement(choices, depth - 1));
    }
    return element;
}

bool IsKnown(XmlElement const& element)
{
    return element.namespaceUri == presentation &&
           (element.name == L"Grid" || element.name == L"StackPanel" || element.name == L"TextBlock") &&
           std::ranges::all_of(element.children, IsKnown);
}

bool IsPage(XmlElement const& root, std::wstring_view className)
{
    return root.namespaceUri == presentation && root.name == L"Page" && root.children.size() <= 1 &&
           std::ranges::all_of(root.children, IsKnown) &&
           root.AttributeValue(L"Class").value_or(std::wstring(className)) == className;
}

void CheckMarkup(XmlElement const& root)
{
    constexpr std::wstring_view className = L"a";
    auto const isPage = IsPage(root, className);
    try
    {
        auto const* const content = sim::ContentOfPage(root, className);
        Demand(isPage, "that it is no page");
        Demand(content == (root.children.empty() ? nullptr : root.children.data()), "the page's content");
    }
    catch (sim::Error const&)
    {
        Demand(!isPage, "that it is a page");
    }
}

void CheckBytes(std::string_view bytes)
{
    try
    {
        CheckMarkup(sim::ParseXml(bytes, L"a.xml"));
    }
    catch (sim::Error const& error)
    {
        Demand(error.Message().starts_with(L"a.xml is not well-formed XML at line "), "the error");
    }
}

XmlElement Parsed(std::string const& written)
try
{
    return sim::ParseXml(written, L"a.xml");
}
catch (sim::Error const& error)
{
    std::fprintf(stderr, "%s\n%ls\n", written.c_str(), error.Message().c_str());
    Demand(false, "that a written element is not well-formed");
    throw;
}

void CheckWritten(Choices& choices)
{
    auto root = SomeElement(choices, 3);
    if (choices.Flag())
    {
        root.namespaceUri = presentation;
        root.name = L"Page";
    }
    auto const written = WrittenXml(root, choices);
    auto const read = WithoutDeclarations(Parsed(written));
    Demand(AreEqual(read, root), "the element read");
    CheckMarkup(read);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    std::string_view const bytes(reinterpret_cast<char const*>(data), size);
    if (bytes.starts_with('<'))
    {
        CheckBytes(bytes);
        return 0;
    }
    Choices choices({data, size});
    CheckWritten(choices);
    return 0;
}
