#include "simulator/broker/AppHost.h"

#include "simulator/model/Error.h"
#include "simulator/model/Files.h"
#include "simulator/model/PackageNames.h"
#include "simulator/model/Text.h"

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
    return {package.Executable(),
            L"\"" + package.Executable() + L"\" -ServerName:" + server,
            package.folder,
            // GetTempPathW asks for TMP first.
            {{L"VELMO_SIM_HOME", device.Home()},
             {L"LOCALAPPDATA", device.Home()},
             {L"TEMP", temporary},
             {L"TMP", temporary}}};
}

bool IsForeground(Activation const& activation)
{
    return activation.kind == ActivationKind::Launch || activation.kind == ActivationKind::Protocol;
}

std::wstring EndOf(bool isTerminated, bool announcedExit)
{
    if (isTerminated)
    {
        return L"app-terminated";
    }
    return announcedExit ? L"app-exited" : L"app-crashed";
}

// What the process left: the place, and after the first blank its callers. The id may be given to another process.
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

AppHost::AppHost(Device const& device, Journal& journal, ProcessStarter& processes, std::mutex& mutex, Lost lost)
    : m_device(device), m_journal(journal), m_processes(processes), m_mutex(mutex), m_lost(std::move(lost))
{
}

void AppHost::Activate(Package const& package, ActivationKind kind, std::wstring argument,
                       std::vector<std::wstring> more)
{
    m_waiting.push_back({{std::to_wstring(++m_lastActivation), kind, std::move(argument), std::move(more)}});
    m_process ? SendWaiting() : Start(package);
}

bool AppHost::IsExpected(unsigned long processId) const noexcept
{
    return m_process && m_process->id == processId && !m_process->hasConnected;
}

void AppHost::Attach(std::shared_ptr<Peer> peer)
{
    m_process->hasConnected = true;
    m_process->peer = std::move(peer);
    SendWaiting();
}

std::optional<Activation> AppHost::Taken(Peer const& from, std::wstring const& activationId)
{
    auto const found =
        std::ranges::find_if(m_waiting, [&](auto const& waiting) { return waiting.activation.id == activationId; });
    if (!IsPeer(from) || found == m_waiting.end())
    {
        return std::nullopt;
    }
    auto activation = std::move(found->activation);
    m_waiting.erase(found);
    if (activation.kind == ActivationKind::Suspend)
    {
        m_journal.Add(L"suspending");
    }
    else if (activation.kind == ActivationKind::Page)
    {
        m_process->tookActivation = true;
        m_journal.Add(L"page-requested", {Detail(L"class", activation.argument)});
    }
    else
    {
        m_process->tookActivation = true;
        m_process->wasInForeground |= IsForeground(activation);
        m_journal.Add(L"activated", activation.Details());
    }
    return activation;
}

void AppHost::ExitAnnounced(Peer const& from)
{
    if (IsPeer(from) && !m_process->announcedExit)
    {
        m_process->announcedExit = true;
        m_journal.Add(L"exit-announced");
    }
}

void AppHost::PeerClosed(Peer const& from)
{
    if (IsPeer(from))
    {
        m_process->peer.reset();
        FinishIfOver();
    }
}

void AppHost::Send(Message const& message)
{
    if (m_process && m_process->peer)
    {
        m_process->peer->Send(message);
    }
}

bool AppHost::IsPeer(Peer const& peer) const noexcept
{
    return m_process && m_process->peer.get() == &peer;
}

bool AppHost::IsRunning() const noexcept
{
    return m_process != nullptr;
}

bool AppHost::RunsInBackgroundOnly() const noexcept
{
    return m_process && m_process->peer && !m_process->announcedExit && !m_process->isTerminated &&
           !m_process->wasInForeground &&
           std::ranges::none_of(m_waiting, [](auto const& waiting) { return IsForeground(waiting.activation); });
}

void AppHost::Terminate()
{
    if (m_process)
    {
        m_process->isTerminated = true;
        Kill();
    }
}

void AppHost::Kill()
{
    if (m_process && !m_process->exitCode)
    {
        m_processes.Kill(m_process->id, 1); // the code that Task Manager gives
    }
}

std::wstring AppHost::Status() const
{
    auto text = m_process ? L"process " + std::to_wstring(m_process->id) : std::wstring(L"not running");
    if (m_process && (m_process->announcedExit || m_process->isTerminated))
    {
        text += L", ending";
    }
    if (!m_waiting.empty())
    {
        text += L", activations waiting: " + std::to_wstring(m_waiting.size());
    }
    return text;
}

void AppHost::Start(Package const& package)
{
    auto const request = RequestFor(package, m_device);
    auto const started = m_processes.Start(request, [this](unsigned long id, unsigned long exitCode) {
        std::lock_guard const lock(m_mutex);
        ProcessEnded(id, exitCode);
    });
    if (started.error != 0)
    {
        m_journal.Add(L"app-start-failed", {Detail(L"error", std::to_wstring(started.error))});
        LoseWaiting();
        throw Error(L"cannot start " + request.executable + L": " + SystemMessage(started.error));
    }
    m_process = std::make_unique<Process>(package, started.id);
    m_journal.Add(L"app-started",
                  {Detail(L"pid", std::to_wstring(started.id)), Detail(L"command", request.commandLine)});
}

void AppHost::SendWaiting()
{
    if (!m_process->peer || m_process->announcedExit || m_process->isTerminated)
    {
        return;
    }
    for (auto& waiting : m_waiting)
    {
        if (!waiting.isSent)
        {
            waiting.isSent = true;
            m_process->peer->Send(MakeMessage(L"activate", waiting.activation.Words()));
        }
    }
}

void AppHost::ProcessEnded(unsigned long id, unsigned long exitCode)
{
    if (m_process && m_process->id == id)
    {
        m_process->exitCode = exitCode;
        FinishIfOver();
    }
}

// A process is over when it has ended and all that it said has been heard: its connection closes after its last words,
// while its end may be seen before them.
void AppHost::FinishIfOver()
{
    auto const code = m_process->exitCode;
    if (!code || m_process->peer)
    {
        return;
    }
    auto const process = std::move(m_process);
    std::vector<std::wstring> details = {
        Detail(L"pid", std::to_wstring(process->id)),
        Detail(L"code", *code > 0xFFFF ? Hex(static_cast<std::uint32_t>(*code)) : std::to_wstring(*code))};
    std::ranges::move(CrashDetails(m_device.CrashFile(process->id)), std::back_inserter(details));
    m_journal.Add(EndOf(process->isTerminated, process->announcedExit), std::move(details));
    std::erase_if(m_waiting, [](auto const& w) { return w.activation.kind == ActivationKind::Suspend; });
    if (!process->tookActivation)
    {
        LoseWaiting();
        return; // what has come through that has been seen to already
    }
    if (m_waiting.empty())
    {
        return;
    }
    for (auto& waiting : m_waiting)
    {
        waiting.isSent = false;
    }
    try
    {
        Start(process->package);
    }
    catch (Error const&)
    {
        // Ignored: it is in the journal already, and nobody waits for an answer here.
    }
}

void AppHost::LoseWaiting()
{
    auto const lost = std::move(m_waiting);
    m_waiting.clear();
    for (auto const& waiting : lost)
    {
        m_journal.Add(L"activation-lost", waiting.activation.Details());
        m_lost(waiting.activation);
    }
}

} // namespace sim
