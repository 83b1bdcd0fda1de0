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

} // namespace

AppHost::AppHost(Device const& device, Journal& journal, ProcessStarter& processes, std::mutex& mutex)
    : m_device(device), m_journal(journal), m_processes(processes), m_mutex(mutex)
{
}

void AppHost::Activate(Package const& package, ActivationKind kind, std::wstring argument)
{
    m_waiting.push_back({{std::to_wstring(++m_lastActivation), kind, std::move(argument)}});
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

void AppHost::Taken(Peer const& from, std::wstring const& activationId)
{
    auto const found = std::find_if(m_waiting.begin(), m_waiting.end(),
                                    [&](auto const& waiting) { return waiting.activation.id == activationId; });
    if (!IsPeer(from) || found == m_waiting.end())
    {
        return;
    }
    if (found->activation.kind == ActivationKind::Suspend)
    {
        m_journal.Add(L"suspending");
    }
    else
    {
        m_process->tookActivation = true;
        m_journal.Add(L"activated", found->activation.Details());
    }
    m_waiting.erase(found);
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
    return m_process.has_value();
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
    if (m_process && m_process->announcedExit)
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
    m_process.emplace(package, started.id);
    m_journal.Add(L"app-started",
                  {Detail(L"pid", std::to_wstring(started.id)), Detail(L"command", request.commandLine)});
}

void AppHost::SendWaiting()
{
    if (!m_process->peer || m_process->announcedExit)
    {
        return;
    }
    for (auto& waiting : m_waiting)
    {
        if (!waiting.isSent)
        {
            waiting.isSent = true;
            Message message = {L"activate"};
            auto const words = waiting.activation.Words();
            message.insert(message.end(), words.begin(), words.end());
            m_process->peer->Send(message);
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
    if (!m_process->exitCode || m_process->peer)
    {
        return;
    }
    auto const process = *std::exchange(m_process, std::nullopt);
    m_journal.Add(process.announcedExit ? L"app-exited" : L"app-crashed",
                  {Detail(L"pid", std::to_wstring(process.id)),
                   Detail(L"code", *process.exitCode > 0xFFFF ? Hex(static_cast<std::uint32_t>(*process.exitCode))
                                                              : std::to_wstring(*process.exitCode))});
    std::erase_if(m_waiting, [](auto const& w) { return w.activation.kind == ActivationKind::Suspend; });
    if (!process.tookActivation)
    {
        LoseWaiting();
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
        Start(process.package);
    }
    catch (Error const&)
    {
        // In the journal already, and nobody waits for an answer here.
    }
}

void AppHost::LoseWaiting()
{
    for (auto const& waiting : m_waiting)
    {
        m_journal.Add(L"activation-lost", waiting.activation.Details());
    }
    m_waiting.clear();
}

} // namespace sim
