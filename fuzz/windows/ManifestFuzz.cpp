// Manifests of packages. Any bytes are read or refused with an Error. Declarations written as a manifest come back as
// they were; one that the rules forbid, or a needed one left out, is refused.
#include "fuzz/Demand.h"
#include "fuzz/windows/WrittenXml.h"
#include "simulator/base/Error.h"
#include "simulator/package/Manifest.h"

#include <algorithm>
#include <tuple>
#include <utility>

using namespace fuzz;
using sim::Manifest;
using sim::XmlElement;

namespace
{

constexpr wchar_t foundation[] = L"http://schemas.microsoft.com/appx/manifest/foundation/windows10";
constexpr wchar_t uap[] = L"http://schemas.microsoft.com/appx/manifest/uap/windows10";
constexpr wchar_t desktop[] = L"http://schemas.microsoft.com/appx/manifest/desktop/windows10";
constexpr wchar_t restricted[] =
    L"http://schemas.microsoft.com/appx/manifest/foundation/windows10/restrictedcapabilities";

using Attributes = std::vector<XmlElement::Attribute>;

XmlElement Made(std::wstring_view space, std::wstring_view name, Attributes attributes = {},
                std::vector<XmlElement> children = {})
{
    return {std::wstring(space), std::wstring(name), {}, std::move(attributes), std::move(children)};
}

std::wstring SomeName(Choices& choices)
{
    return L"n" + choices.Text(2, L"ab.&\u00FC ");
}

std::vector<std::wstring> SomeNames(Choices& choices)
{
    std::vector<std::wstring> names(choices.Below(3));
    std::ranges::generate(names, [&] { return SomeName(choices); });
    return names;
}

Manifest SomeManifest(Choices& choices)
{
    Manifest manifest;
    manifest.name = SomeName(choices);
    manifest.publisher = SomeName(choices);
    manifest.version = std::to_wstring(choices.Below(65536));
    for (int part = 1; part < 4; ++part)
    {
        manifest.version += L"." + std::to_wstring(choices.Below(65536));
    }
    manifest.applicationId = SomeName(choices);
    manifest.executable = SomeName(choices);
    manifest.entryPoint = SomeName(choices);
    manifest.protocols = SomeNames(choices);
    manifest.appServices = SomeNames(choices);
    if (choices.Flag())
    {
        auto& component = manifest.desktopComponent.emplace();
        component.executable = SomeName(choices);
        for (auto const& id : SomeNames(choices))
        {
            component.groups.push_back({id, SomeName(choices)});
        }
    }
    for (auto const& path : SomeNames(choices))
    {
        manifest.inProcessServers.push_back({path, SomeNames(choices)});
    }
    manifest.mayRunFullTrust = choices.Flag();
    return manifest;
}

bool IsEachOnce(std::vector<std::wstring> names)
{
    std::ranges::sort(names);
    return std::ranges::adjacent_find(names) == names.end();
}

// By the rules for declarations that each have their attributes.
bool IsAllowed(Manifest const& manifest)
{
    std::vector<std::wstring> groups;
    std::vector<std::wstring> classes;
    auto hasEachServerAClass = true;
    for (auto const& group :
         manifest.desktopComponent ? manifest.desktopComponent->groups : std::vector<Manifest::ParameterGroup>())
    {
        groups.push_back(group.id);
    }
    for (auto const& server : manifest.inProcessServers)
    {
        classes.insert(classes.end(), server.classes.begin(), server.classes.end());
        hasEachServerAClass &= !server.classes.empty();
    }
    return IsEachOnce(manifest.appServices) && IsEachOnce(groups) && IsEachOnce(classes) && hasEachServerAClass;
}

XmlElement Extension(std::wstring_view space, std::wstring_view category, XmlElement content)
{
    return Made(space, L"Extension", {{L"Category", std::wstring(category)}}, {std::move(content)});
}

XmlElement ComponentOf(Manifest::DesktopComponent const& component)
{
    auto process = Made(desktop, L"FullTrustProcess");
    for (auto const& [id, parameters] : component.groups)
    {
        process.children.push_back(Made(desktop, L"ParameterGroup", {{L"GroupId", id}, {L"Parameters", parameters}}));
    }
    auto extension = Extension(desktop, L"windows.fullTrustProcess", std::move(process));
    extension.attributes.push_back({L"Executable", component.executable});
    return extension;
}

XmlElement ServerOf(Manifest::InProcessServer const& server)
{
    auto path = Made(foundation, L"Path");
    path.text = server.path;
    auto element = Made(foundation, L"InProcessServer", {}, {std::move(path)});
    for (auto const& name : server.classes)
    {
        element.children.push_back(
            Made(foundation, L"ActivatableClass", {{L"ActivatableClassId", name}, {L"ThreadingModel", L"both"}}));
    }
    return Extension(foundation, L"windows.activatableClass.inProcessServer", std::move(element));
}

XmlElement ApplicationOf(Manifest const& manifest)
{
    auto extensions = Made(foundation, L"Extensions");
    auto& all = extensions.children;
    for (auto const& name : manifest.protocols)
    {
        all.push_back(Extension(uap, L"windows.protocol", Made(uap, L"Protocol", {{L"Name", name}})));
    }
    for (auto const& name : manifest.appServices)
    {
        all.push_back(Extension(uap, L"windows.appService", Made(uap, L"AppService", {{L"Name", name}})));
    }
    if (manifest.desktopComponent)
    {
        all.push_back(ComponentOf(*manifest.desktopComponent));
    }
    return Made(
        foundation, L"Application",
        {{L"Id", manifest.applicationId}, {L"Executable", manifest.executable}, {L"EntryPoint", manifest.entryPoint}},
        {std::move(extensions)});
}

XmlElement PackageOf(Manifest const& manifest)
{
    auto package =
        Made(foundation, L"Package", {},
             {Made(foundation, L"Identity",
                   {{L"Name", manifest.name}, {L"Publisher", manifest.publisher}, {L"Version", manifest.version}}),
              Made(foundation, L"Applications", {}, {ApplicationOf(manifest)}), Made(foundation, L"Capabilities"),
              Made(foundation, L"Extensions")});
    package.children[2].children.push_back(Made(foundation, L"Capability", {{L"Name", L"internetClient"}}));
    if (manifest.mayRunFullTrust)
    {
        package.children[2].children.push_back(Made(restricted, L"Capability", {{L"Name", L"runFullTrust"}}));
    }
    std::ranges::transform(manifest.inProcessServers, std::back_inserter(package.children[3].children), ServerOf);
    return package;
}

bool AreEqual(Manifest const& one, Manifest const& other)
{
    auto const facts = [](Manifest const& manifest) {
        return std::tie(manifest.name, manifest.publisher, manifest.version, manifest.applicationId,
                        manifest.executable, manifest.entryPoint, manifest.protocols, manifest.appServices,
                        manifest.mayRunFullTrust);
    };
    auto const components = [](Manifest const& manifest) {
        std::vector<std::wstring> texts;
        if (manifest.desktopComponent)
        {
            texts.push_back(manifest.desktopComponent->executable);
            for (auto const& [id, parameters] : manifest.desktopComponent->groups)
            {
                texts.insert(texts.end(), {id, parameters});
            }
        }
        return texts;
    };
    auto const areServersEqual = [](auto const& left, auto const& right) {
        return left.path == right.path && left.classes == right.classes;
    };
    return facts(one) == facts(other) && components(one) == components(other) &&
           std::ranges::equal(one.inProcessServers, other.inProcessServers, areServersEqual);
}

// Nothing when it is refused.
std::optional<Manifest> Parsed(std::string_view bytes)
{
    try
    {
        return sim::ParseManifest(bytes, L"m.xml");
    }
    catch (sim::Error const& error)
    {
        Demand(error.Message().starts_with(L"m.xml"), "the error");
        return std::nullopt;
    }
}

// Takes an attribute out of one of the elements on the way to a leaf.
void TakeAttribute(XmlElement& element, Choices& choices, bool& isTaken)
{
    if (!element.attributes.empty() && (element.children.empty() || choices.Flag()))
    {
        element.attributes.erase(element.attributes.begin() +
                                 choices.Below(static_cast<std::uint32_t>(element.attributes.size())));
        isTaken = true;
    }
    else if (!element.children.empty())
    {
        auto const count = static_cast<std::uint32_t>(element.children.size());
        TakeAttribute(element.children[choices.Below(count)], choices, isTaken);
    }
}

void CheckWritten(Choices& choices)
{
    auto const manifest = SomeManifest(choices);
    auto package = PackageOf(manifest);
    auto const read = Parsed(WrittenXml(package, choices));
    Demand(read.has_value() == IsAllowed(manifest), "whether the manifest is refused");
    Demand(!read || AreEqual(*read, manifest), "the manifest read");

    auto isTaken = false;
    TakeAttribute(package, choices, isTaken);
    // All that are written are needed, but the name of a capability that is not asked about.
    auto const isNeeded = isTaken && !package.children[2].children.front().attributes.empty();
    Demand(!isNeeded || !Parsed(WrittenXml(package, choices)), "that a manifest lacks an attribute");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    std::string_view const bytes(reinterpret_cast<char const*>(data), size);
    if (bytes.starts_with('<'))
    {
        Parsed(bytes);
        return 0;
    }
    Choices choices({data, size});
    CheckWritten(choices);
    return 0;
}
