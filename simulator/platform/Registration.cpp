#include "simulator/platform/Registration.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Text.h"

namespace sim
{

Registration::Registration(Device const& device, Journal& journal) : m_device(device), m_journal(journal)
{
    try
    {
        if (FileExists(m_device.RegistrationFile()))
        {
            m_package = RegisteredPackage(m_device);
        }
    }
    catch (Error const& error)
    {
        m_journal.Add(L"package-lost", {Detail(L"reason", error.Message())});
    }
}

Package const& Registration::Require() const
{
    if (!m_package)
    {
        throw Error(L"no package is registered: sim register FOLDER comes first");
    }
    return *m_package;
}

void Registration::RequireNoDowngradeTo(Package const& package) const
{
    if (m_package && m_package->FamilyName() == package.FamilyName() &&
        package.manifest.VersionNumber() < m_package->manifest.VersionNumber())
    {
        throw Error(L"version " + package.manifest.version + L" is lower than the registered " +
                    m_package->manifest.version +
                    L" (ERROR_INSTALL_PACKAGE_DOWNGRADE, 0x80073D06); --force puts it in its place");
    }
}

void Registration::Set(Package package)
{
    MakeFolder(m_device.StateFolder(package.FamilyName()));
    WriteBytes(m_device.RegistrationFile(), ToUtf8(package.folder));
    m_package = std::move(package);
    m_journal.Add(L"package-registered",
                  {Detail(L"family", m_package->FamilyName()), Detail(L"version", m_package->manifest.version)});
}

void Registration::Remove()
{
    auto const family = Require().FamilyName();
    sim::Remove(m_device.RegistrationFile());
    sim::Remove(m_device.PackageDataFolder(family));
    m_package.reset();
    m_journal.Add(L"package-unregistered", {Detail(L"family", family)});
}

} // namespace sim
