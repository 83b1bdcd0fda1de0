#include "simulator/package/Manifest.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Text.h"
#include "simulator/base/XmlElement.h"

#include <algorithm>

namespace sim
{

namespace
{

constexpr wchar_t foundation[] = L"http://schemas.microsoft.com/appx/manifest/foundation/windows10";
constexpr wchar_t uap[] = L"http://schemas.microsoft.com/appx/manifest/uap/windows10";
constexpr wchar_t desktop[] = L"http://schemas.microsoft.com/appx/manifest/desktop/windows10";
constexpr wchar_t restricted[] =
    L"http://schemas.microsoft.com/appx/manifest/foundation/windows10/restrictedcapabilities";

// 1.2.3.4
std::optional<std::uint64_t> ParseVersion(std::wstring_view text)
{
    std::uint64_t version = 0;
    for (int partsLeft = 4; partsLeft > 0; --partsLeft)
    {
        auto const end = std::min(text.find(L'.'), text.size());
        auto const part = ParseNumber(text.substr(0, end));
        auto const isLast = end == text.size();
        if (!part || *part > 0xFFFF || isLast != (partsLeft == 1))
        {
            return std::nullopt;
        }
        version = version << 16 | *part;
        text.remove_prefix(isLast ? end : end + 1);
    }
    return version;
}

class ManifestReader
{
  public:
    explicit ManifestReader(std::wstring const& path) : m_path(path) {}

    Manifest Read(XmlElement const& package)
    {
        if (package.namespaceUri != foundation || package.name != L"Package")
        {
            Fail(L"its root is no <Package> of " + std::wstring(foundation));
        }
        ReadIdentity(Need(package, L"Identity"));
        ReadApplication(OnlyApplication(Need(package, L"Applications")));
        if (auto const* capabilities = package.Child(foundation, L"Capabilities"))
        {
            ReadCapabilities(*capabilities);
        }
        for (auto const* server : Extensions(package, foundation, L"windows.activatableClass.inProcessServer"))
        {
            ReadInProcessServer(Need(*server, L"InProcessServer"));
        }
        return std::move(m_manifest);
    }

  private:
    [[noreturn]] void Fail(std::wstring const& what) const { throw Error(m_path + L": " + what); }

    XmlElement const& Need(XmlElement const& parent, std::wstring_view name) const
    {
        auto const* child = parent.Child(foundation, name);
        if (!child)
        {
            Fail(L"<" + parent.name + L"> has no <" + std::wstring(name) + L">");
        }
        return *child;
    }

    std::wstring NeedAttribute(XmlElement const& element, std::wstring_view name) const
    {
        auto const value = element.AttributeValue(name);
        if (!value || value->empty())
        {
            Fail(L"<" + element.name + L"> has no " + std::wstring(name));
        }
        return *value;
    }

    XmlElement const& OnlyApplication(XmlElement const& applications) const
    {
        auto const found = applications.Children(foundation, L"Application");
        if (found.size() != 1)
        {
            Fail(L"<Applications> has " + std::to_wstring(found.size()) + L" <Application>, one is served");
        }
        return *found.front();
    }

    void ReadIdentity(XmlElement const& identity)
    {
        m_manifest.name = NeedAttribute(identity, L"Name");
        m_manifest.publisher = NeedAttribute(identity, L"Publisher");
        m_manifest.version = NeedAttribute(identity, L"Version");
        if (!ParseVersion(m_manifest.version))
        {
            Fail(L"the Version " + m_manifest.version + L" is not of four numbers up to 65535");
        }
    }

    void ReadApplication(XmlElement const& application)
    {
        m_manifest.applicationId = NeedAttribute(application, L"Id");
        m_manifest.executable = NeedAttribute(application, L"Executable");
        m_manifest.entryPoint = NeedAttribute(application, L"EntryPoint");
        for (auto const* extension : Extensions(application, uap, L"windows.protocol"))
        {
            ReadProtocol(OnlyIn(*extension, L"windows.protocol", L"Protocol"));
        }
        for (auto const* extension : Extensions(application, uap, L"windows.appService"))
        {
            ReadAppService(*extension);
        }
        for (auto const* extension : Extensions(application, desktop, L"windows.fullTrustProcess"))
        {
            ReadDesktopComponent(*extension);
        }
    }

    // The extensions of a category.
    std::vector<XmlElement const*> Extensions(XmlElement const& parent, std::wstring_view prefix,
                                              std::wstring_view category) const
    {
        auto const* const extensions = parent.Child(foundation, L"Extensions");
        auto found = extensions ? extensions->Children(prefix, L"Extension") : std::vector<XmlElement const*>();
        std::erase_if(found, [&](auto const* extension) { return NeedAttribute(*extension, L"Category") != category; });
        return found;
    }

    XmlElement const& OnlyIn(XmlElement const& extension, std::wstring const& category, std::wstring const& name) const
    {
        auto const* const child = extension.Child(uap, name);
        if (!child)
        {
            Fail(L"the " + category + L" extension has no <uap:" + name + L">");
        }
        return *child;
    }

    void ReadProtocol(XmlElement const& protocol)
    {
        auto const name = NeedAttribute(protocol, L"Name");
        if (std::ranges::any_of(name, [](wchar_t c) { return c >= L'A' && c <= L'Z'; }))
        {
            Fail(L"the protocol name " + name + L" is not in lower case");
        }
        m_manifest.protocols.push_back(name);
    }

    void ReadAppService(XmlElement const& extension)
    {
        if (extension.AttributeValue(L"EntryPoint"))
        {
            Fail(L"the windows.appService extension has an EntryPoint; served are those of the application itself");
        }
        auto const name = NeedAttribute(OnlyIn(extension, L"windows.appService", L"AppService"), L"Name");
        if (m_manifest.DeclaresAppService(name))
        {
            Fail(L"there are two app services with the Name " + name);
        }
        m_manifest.appServices.push_back(name);
    }

    void ReadDesktopComponent(XmlElement const& extension)
    {
        if (m_manifest.desktopComponent)
        {
            Fail(L"there is more than one windows.fullTrustProcess extension");
        }
        auto& component = m_manifest.desktopComponent.emplace();
        component.executable = NeedAttribute(extension, L"Executable");
        auto const* process = extension.Child(desktop, L"FullTrustProcess");
        for (auto const* group :
             process ? process->Children(desktop, L"ParameterGroup") : std::vector<XmlElement const*>())
        {
            auto id = NeedAttribute(*group, L"GroupId");
            if (component.Group(id))
            {
                Fail(L"there are two parameter groups with the GroupId " + id);
            }
            component.groups.push_back({std::move(id), NeedAttribute(*group, L"Parameters")});
        }
    }

    void ReadInProcessServer(XmlElement const& element)
    {
        Manifest::InProcessServer server{Need(element, L"Path").text, {}};
        if (server.path.empty())
        {
            Fail(L"the <Path> of an in-process server is empty");
        }
        Need(element, L"ActivatableClass");
        for (auto const* activatable : element.Children(foundation, L"ActivatableClass"))
        {
            server.classes.push_back(ReadClass(*activatable, server));
        }
        m_manifest.inProcessServers.push_back(std::move(server));
    }

    std::wstring ReadClass(XmlElement const& activatable, Manifest::InProcessServer const& server) const
    {
        auto const threading = NeedAttribute(activatable, L"ThreadingModel");
        if (threading != L"both" && threading != L"STA" && threading != L"MTA")
        {
            Fail(L"there is no ThreadingModel " + threading);
        }
        auto name = NeedAttribute(activatable, L"ActivatableClassId");
        if (m_manifest.InProcessServerOf(name) || server.Has(name))
        {
            Fail(L"there are two classes with the ActivatableClassId " + name);
        }
        return name;
    }

    void ReadCapabilities(XmlElement const& capabilities)
    {
        for (auto const* capability : capabilities.Children(restricted, L"Capability"))
        {
            m_manifest.mayRunFullTrust |= NeedAttribute(*capability, L"Name") == L"runFullTrust";
        }
    }

    std::wstring const& m_path;
    Manifest m_manifest;
};

} // namespace

Manifest::ParameterGroup const* Manifest::DesktopComponent::Group(std::wstring_view id) const
{
    auto const found = std::ranges::find(groups, id, &ParameterGroup::id);
    return found == groups.end() ? nullptr : &*found;
}

std::uint64_t Manifest::VersionNumber() const
{
    return ParseVersion(version).value_or(0);
}

bool Manifest::DeclaresAppService(std::wstring_view service) const
{
    return std::ranges::find(appServices, service) != appServices.end();
}

bool Manifest::InProcessServer::Has(std::wstring_view className) const
{
    return std::ranges::find(classes, className) != classes.end();
}

Manifest::InProcessServer const* Manifest::InProcessServerOf(std::wstring_view className) const
{
    auto const found =
        std::ranges::find_if(inProcessServers, [&](auto const& server) { return server.Has(className); });
    return found == inProcessServers.end() ? nullptr : &*found;
}

Manifest ReadManifest(std::wstring const& path)
{
    if (!FileExists(path))
    {
        throw Error(L"there is no file " + path);
    }
    return ParseManifest(ReadBytes(path), path);
}

Manifest ParseManifest(std::string_view bytes, std::wstring const& path)
{
    return ManifestReader(path).Read(ParseXml(bytes, path));
}

} // namespace sim
