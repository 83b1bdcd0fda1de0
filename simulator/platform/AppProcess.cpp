#include "simulator/platform/AppProcess.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Text.h"
#include "simulator/package/PackageNames.h"

#include <algorithm>

namespace sim
{

namespace
{

ProcessRequest RequestFor(Package const& package, Device const& device)
{
    auto const temporary = device.AppTemporaryFolder(package.FamilyName());
    MakeFolder(temporary);
    MakeFolder(ParentOf(device.CrashFile(0)));
    auto const server = ServerName(package.FamilyName(), package.manifest.applicationId);
    return {package.Executable(), L"\"" + package.Executable() + L"\" -ServerName:" + server, package.folder,
            device.Environment(temporary)};
}

std::wstring EndEvent(bool isTerminated, bool announcedExit)
{
    if (isTerminated)
    {
        return L"app-terminated";
    }
    return announcedExit ? L"app-exited" : L"app-crashed";
}

// Reads the crash report that the process left: the place, and after the first blank its callers. Removes it, since the
// system may reuse the process id.
std::vector<std::wstring> CrashDetails(std::wstring const& file)
try
{
    if (!FileExists(file))
    {
        return {};
    }
    auto const places = FromUtf8(ReadBytes(file));
    Remove(file);
    auto const end = std::min(places.find(L' '), places.size());
    return {Detail(L"at", places.substr(0, end)), Detail(L"callers", places.substr(std::min(end + 1, places.size())))};
}
catch (Error const&)
{
    return {};
}

} // namespace

AppProcess::AppProcess(Device const& device, Registration const& registration, Journal& journal,
                       ProcessStarter& processes)
    : m_device(device), m_registration(registration), m_journal(journal), m_processes(processes)
{
}

void AppProcess::Activate(Activation::Content content)
{
    static_cast<void>(m_registration.Require());
    m_waiting.push_back({{++m_lastActivation, std::move(content)}});
    if (m_process || m_isHeld)
    {
        SendWaiting();
        return;
    }
    try
    {
        Start();
    }
    catch (Error const&)
    {
        DropWaiting(); // only this one: without a process nothing else waits
        throw;
    }
}

AppProcess::Activations AppProcess::Release()
{
    m_isHeld = false;
    if (!m_process)
    {
        return StartForWaiting();
    }
    if (!IsActive() || m_process->wasInForeground || !m_waiting.empty())
    {
        Resume(); // it is starting, ending, or has something to do
    }
    SendWaiting();
    return {};
}

void AppProcess::Expect(unsigned long processId)
{
    m_process = Process{.id = processId};
}

bool AppProcess::IsExpected(unsigned long processId) const noexcept
{
    return m_process && m_process->id == processId && !m_process->hasConnected;
}

// There is a process wherever its peer sends or is expected, which the lint cannot know.
// NOLINTBEGIN(bugprone-unchecked-optional-access)

void AppProcess::Attach(std::shared_ptr<Peer> peer)
{
    m_process->hasConnected = true;
    m_process->peer = std::move(peer);
    SendWaiting();
}

std::optional<Activation> AppProcess::Taken(Peer const& from, std::uint32_t activation)
{
    auto const found =
        std::ranges::find_if(m_waiting, [&](auto const& waiting) { return waiting.activation.id == activation; });
    if (!IsPeer(from) || found == m_waiting.end())
    {
        return std::nullopt;
    }
    auto taken = std::move(found->activation);
    m_waiting.erase(found);
    m_process->tookActivation |= !std::holds_alternative<Suspension>(taken.content);
    m_process->wasInForeground |= IsForeground(taken);
    Report(taken);
    return taken;
}

void AppProcess::ExitAnnounced(Peer const& from)
{
    if (IsPeer(from) && !m_process->announcedExit)
    {
        m_process->announcedExit = true;
        m_journal.Add(L"exit-announced");
    }
}

AppProcess::Activations AppProcess::ConnectionClosed(Peer const& from)
{
    if (!IsPeer(from))
    {
        return {};
    }
    m_process->peer.reset();
    return FinishIfEnded();
}

AppProcess::Activations AppProcess::ProcessEnded(unsigned long id, unsigned long exitCode)
{
    if (!m_process || m_process->id != id)
    {
        return {};
    }
    m_process->exitCode = exitCode;
    return FinishIfEnded();
}

void AppProcess::Send(ToProcess const& message)
{
    if (m_process && m_process->peer)
    {
        m_process->peer->Send(message);
    }
}

bool AppProcess::IsPeer(Peer const& peer) const noexcept
{
    return m_process && m_process->peer.get() == &peer;
}

bool AppProcess::IsRunning() const noexcept
{
    return m_process.has_value();
}

bool AppProcess::RunsInBackgroundOnly() const noexcept
{
    return IsActive() && !m_process->isSuspended && !m_process->wasInForeground &&
           std::ranges::none_of(m_waiting, [](auto const& waiting) { return IsForeground(waiting.activation); });
}

bool AppProcess::HasTakenAll() const noexcept
{
    return IsActive() && std::ranges::all_of(m_waiting, [](auto const& waiting) { return IsSuspension(waiting); });
}

void AppProcess::Suspend()
{
    if (m_process && !m_process->isTerminated && !m_process->isSuspended && m_processes.Suspend(m_process->id))
    {
        m_process->isSuspended = true;
        m_journal.Add(L"app-suspended");
    }
}

void AppProcess::Resume()
{
    if (std::exchange(m_process->isSuspended, false))
    {
        m_journal.Add(L"app-resumed",
                      WithWake({}, m_waiting.empty() ? 0 : WakeOf(m_waiting.front().activation.content)));
        m_processes.Resume(m_process->id);
    }
}

void AppProcess::Terminate()
{
    if (m_process && !m_process->isTerminated)
    {
        m_process->isTerminated = true;
        Kill();
    }
}

void AppProcess::Kill()
{
    if (m_process && !m_process->exitCode)
    {
        m_processes.Kill(m_process->id, 1); // Task Manager's exit code
    }
}

std::wstring AppProcess::Status() const
{
    auto text = m_process ? L"process " + std::to_wstring(m_process->id) : std::wstring(L"not running");
    if (m_process && (m_process->announcedExit || m_process->isTerminated))
    {
        text += L", ending";
    }
    else if (IsSuspended())
    {
        text += L", suspended";
    }
    if (!m_waiting.empty())
    {
        text += L", activations waiting: " + std::to_wstring(m_waiting.size());
    }
    return text;
}

bool AppProcess::IsActive() const noexcept
{
    return !m_isHeld && m_process && m_process->peer && !m_process->announcedExit && !m_process->isTerminated;
}

void AppProcess::Start()
{
    auto const request = RequestFor(m_registration.Require(), m_device);
    auto const started = m_processes.Start(request);
    if (started.error != 0)
    {
        m_journal.Add(L"app-start-failed", {Detail(L"error", std::to_wstring(started.error))});
        throw Error(L"cannot start " + request.executable + L": " + SystemMessage(started.error));
    }
    m_process = Process{.id = started.id};
    m_journal.Add(L"app-started",
                  WithWake({Detail(L"pid", std::to_wstring(started.id)), Detail(L"command", request.commandLine)},
                           WakeOf(m_waiting.front().activation.content)));
}

void AppProcess::SendWaiting()
{
    if (!IsActive() || m_waiting.empty())
    {
        return;
    }
    Resume();
    for (auto& waiting : m_waiting)
    {
        if (!waiting.isSent)
        {
            waiting.isSent = true;
            m_process->peer->Send(sim::Activate{waiting.activation});
        }
    }
}

void AppProcess::Report(Activation const& activation)
{
    if (std::holds_alternative<Suspension>(activation.content))
    {
        m_journal.Add(L"suspending");
    }
    else if (auto const* const page = std::get_if<PageRequest>(&activation.content))
    {
        m_journal.Add(L"page-requested", {Detail(L"class", page->className)});
    }
    else
    {
        m_journal.Add(L"activated", DetailsOf(activation));
    }
}

// The process counts as ended when it has exited and its connection has closed: its exit may be seen before its last
// message.
AppProcess::Activations AppProcess::FinishIfEnded()
{
    if (!m_process->exitCode || m_process->peer)
    {
        return {};
    }
    auto const process = *std::exchange(m_process, std::nullopt);
    ReportEnd(process);
    std::erase_if(m_waiting, IsSuspension);
    if (m_isHeld)
    {
        return {};
    }
    return process.tookActivation ? StartForWaiting() : DropWaiting();
}

void AppProcess::ReportEnd(Process const& process)
{
    auto const code = *process.exitCode;
    std::vector<std::wstring> details = {
        Detail(L"pid", std::to_wstring(process.id)),
        Detail(L"code", code > 0xFFFF ? Hex(static_cast<std::uint32_t>(code)) : std::to_wstring(code))};
    std::ranges::move(CrashDetails(m_device.CrashFile(process.id)), std::back_inserter(details));
    m_journal.Add(EndEvent(process.isTerminated, process.announcedExit), std::move(details));
}

AppProcess::Activations AppProcess::StartForWaiting()
{
    if (m_waiting.empty())
    {
        return {};
    }
    for (auto& waiting : m_waiting)
    {
        waiting.isSent = false;
    }
    try
    {
        Start();
        return {};
    }
    catch (Error const&)
    {
        return DropWaiting(); // the journal has the reason
    }
}

AppProcess::Activations AppProcess::DropWaiting()
{
    Activations lost;
    for (auto& waiting : std::exchange(m_waiting, {}))
    {
        m_journal.Add(L"activation-lost", DetailsOf(waiting.activation));
        lost.push_back(std::move(waiting.activation));
    }
    return lost;
}

// NOLINTEND(bugprone-unchecked-optional-access)

} // namespace sim
