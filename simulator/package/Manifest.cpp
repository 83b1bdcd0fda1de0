#include "simulator/package/Manifest.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
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

class ManifestReader
{
  public:
    explicit ManifestReader(std::wstring const& path) : m_path(path) {}

    Manifest Read()
    {
        auto const package = ReadXml(m_path);
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
        if (auto const* extensions = package.Child(foundation, L"Extensions"))
        {
            for (auto const* extension : extensions->Children(foundation, L"Extension"))
            {
                ReadInProcessServer(*extension);
            }
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
    }

    void ReadApplication(XmlElement const& application)
    {
        m_manifest.applicationId = NeedAttribute(application, L"Id");
        m_manifest.executable = NeedAttribute(application, L"Executable");
        m_manifest.entryPoint = NeedAttribute(application, L"EntryPoint");
        auto const* extensions = application.Child(foundation, L"Extensions");
        if (!extensions)
        {
            return;
        }
        for (auto const* extension : extensions->Children(uap, L"Extension"))
        {
            ReadProtocol(*extension);
            ReadAppService(*extension);
        }
        for (auto const* extension : extensions->Children(desktop, L"Extension"))
        {
            ReadDesktopComponent(*extension);
        }
    }

    void ReadProtocol(XmlElement const& extension)
    {
        if (NeedAttribute(extension, L"Category") != L"windows.protocol")
        {
            return;
        }
        auto const* protocol = extension.Child(uap, L"Protocol");
        if (!protocol)
        {
            Fail(L"the windows.protocol extension has no <uap:Protocol>");
        }
        auto const name = NeedAttribute(*protocol, L"Name");
        if (std::ranges::any_of(name, [](wchar_t c) { return c >= L'A' && c <= L'Z'; }))
        {
            Fail(L"the protocol name " + name + L" is not in lower case");
        }
        m_manifest.protocols.push_back(name);
    }

    void ReadAppService(XmlElement const& extension)
    {
        if (NeedAttribute(extension, L"Category") != L"windows.appService")
        {
            return;
        }
        if (extension.AttributeValue(L"EntryPoint"))
        {
            Fail(L"the windows.appService extension has an EntryPoint; served are those of the application itself");
        }
        auto const* service = extension.Child(uap, L"AppService");
        if (!service)
        {
            Fail(L"the windows.appService extension has no <uap:AppService>");
        }
        auto const name = NeedAttribute(*service, L"Name");
        if (m_manifest.DeclaresAppService(name))
        {
            Fail(L"there are two app services with the Name " + name);
        }
        m_manifest.appServices.push_back(name);
    }

    void ReadDesktopComponent(XmlElement const& extension)
    {
        if (NeedAttribute(extension, L"Category") != L"windows.fullTrustProcess")
        {
            return;
        }
        if (m_manifest.desktopComponent)
        {
            Fail(L"there is more than one windows.fullTrustProcess extension");
        }
        auto& component = m_manifest.desktopComponent.emplace();
        component.executable = NeedAttribute(extension, L"Executable");
        auto const* process = extension.Child(desktop, L"FullTrustProcess");
        if (!process)
        {
            return; // allowed: a component without parameter groups
        }
        for (auto const* group : process->Children(desktop, L"ParameterGroup"))
        {
            AddGroup(component, {NeedAttribute(*group, L"GroupId"), NeedAttribute(*group, L"Parameters")});
        }
    }

    void AddGroup(Manifest::DesktopComponent& component, Manifest::ParameterGroup group) const
    {
        if (component.Group(group.id))
        {
            Fail(L"there are two parameter groups with the GroupId " + group.id);
        }
        component.groups.push_back(std::move(group));
    }

    void ReadInProcessServer(XmlElement const& extension)
    {
        if (NeedAttribute(extension, L"Category") != L"windows.activatableClass.inProcessServer")
        {
            return;
        }
        auto const& element = Need(extension, L"InProcessServer");
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
    return ManifestReader(path).Read();
}

} // namespace sim
