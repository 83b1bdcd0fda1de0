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

Package const& Registration::Need() const
{
    if (!m_package)
    {
        throw Error(L"no package is registered: sim register FOLDER comes first");
    }
    return *m_package;
}

void Registration::Set(Package package)
{
    WriteBytes(m_device.RegistrationFile(), ToUtf8(package.folder));
    m_package = std::move(package);
    m_journal.Add(L"package-registered",
                  {Detail(L"family", m_package->FamilyName()), Detail(L"version", m_package->manifest.version)});
}

void Registration::Remove()
{
    auto const family = Need().FamilyName();
    sim::Remove(m_device.RegistrationFile());
    sim::Remove(m_device.PackageDataFolder(family));
    m_package.reset();
    m_journal.Add(L"package-unregistered", {Detail(L"family", family)});
}

} // namespace sim
