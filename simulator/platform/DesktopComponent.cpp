#include "simulator/platform/DesktopComponent.h"

#include "simulator/base/Files.h"
#include "simulator/base/Text.h"

namespace sim
{

namespace
{

constexpr auto elementNotFound = static_cast<std::int32_t>(0x80070490);
constexpr auto accessDenied = static_cast<std::int32_t>(0x80070005);
constexpr std::uint32_t win32Facility = 0x80070000;

struct Target
{
    std::int32_t result = 0;
    std::wstring parameters;
};

// The component's parameters, or the HRESULT that refuses to start it.
Target FindTarget(Manifest const& manifest, std::wstring const& applicationId, std::optional<std::wstring> const& group)
{
    if (!manifest.desktopComponent || (!applicationId.empty() && applicationId != manifest.applicationId))
    {
        return {elementNotFound, {}};
    }
    if (!manifest.mayRunFullTrust)
    {
        return {accessDenied, {}};
    }
    if (!group)
    {
        return {};
    }
    auto const* declared = manifest.desktopComponent->Group(*group);
    return declared ? Target{0, declared->parameters} : Target{elementNotFound, {}};
}

} // namespace

DesktopComponent::DesktopComponent(Device const& device, Registration const& registration, Journal& journal,
                                   ProcessStarter& processes)
    : m_device(device), m_registration(registration), m_journal(journal), m_processes(processes)
{
}

std::int32_t DesktopComponent::Launch(LaunchDesktop const& launch, std::uint32_t wake)
{
    auto const& package = m_registration.Require();
    auto const target = FindTarget(package.manifest, launch.application, launch.group);
    auto const groupName = launch.group.value_or(L"");
    auto const result = target.result < 0 ? target.result : Start(package, groupName, target.parameters, wake);
    if (result < 0)
    {
        m_journal.Add(
            L"desktop-not-started",
            WithWake({Detail(L"group", groupName), Detail(L"result", Hex(static_cast<std::uint32_t>(result)))}, wake));
    }
    return result;
}

void DesktopComponent::KillAll()
{
    for (auto const& [id, wake] : m_running)
    {
        m_processes.Kill(id, 1);
    }
}

std::int32_t DesktopComponent::Start(Package const& package, std::wstring const& group, std::wstring const& parameters,
                                     std::uint32_t wake)
{
    auto const temporary = m_device.DesktopTemporaryFolder();
    MakeFolder(temporary);
    auto const executable = package.DesktopExecutable();
    auto const command = L"\"" + executable + L"\" /InvokerPRAID: " + package.manifest.applicationId +
                         (parameters.empty() ? L"" : L" " + parameters);
    auto const started =
        m_processes.Start({executable, command, ParentOf(executable), m_device.Environment(temporary)});
    if (started.error != 0)
    {
        return static_cast<std::int32_t>(win32Facility | (started.error & 0xFFFF));
    }
    m_running.emplace(started.id, wake);
    m_journal.Add(L"desktop-started", WithWake({Detail(L"pid", std::to_wstring(started.id)), Detail(L"group", group),
                                                Detail(L"command", command)},
                                               wake));
    return 0;
}

void DesktopComponent::ProcessEnded(unsigned long id, unsigned long exitCode)
{
    if (auto const ended = m_running.extract(id))
    {
        m_journal.Add(L"desktop-exited",
                      WithWake({Detail(L"pid", std::to_wstring(id)), Detail(L"code", std::to_wstring(exitCode))},
                               ended.mapped()));
    }
}

} // namespace sim
