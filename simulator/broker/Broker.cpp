#include "simulator/broker/Broker.h"

#include "simulator/model/Error.h"
#include "simulator/model/Files.h"
#include "simulator/model/Text.h"

#include <algorithm>

namespace sim
{

namespace
{

std::vector<std::wstring> Rest(Message const& message, std::size_t from)
{
    return {message.begin() + static_cast<std::ptrdiff_t>(std::min(from, message.size())), message.end()};
}

} // namespace

Broker::Broker(Device const& device, std::unique_ptr<ProcessStarter> processes, std::function<void()> stop,
               Limits limits)
    : m_device(device), m_journal((MakeFolder(device.Home()), device.JournalFile())), m_stop(std::move(stop)),
      m_app(m_device, m_journal, *processes, m_mutex, [this](Activation const& lost) { Lost(lost); }),
      m_desktop(m_device, m_journal, *processes, m_mutex), m_services(m_device, OutsideOfServices(), limits, m_mutex),
      m_processes(std::move(processes))
{
    m_journal.Listen([this](Event const& event) {
        for (auto const& follower : m_followers)
        {
            follower->Send({L"event", event.Line()});
        }
    });
    LoadRegistration();
}

void Broker::Received(std::shared_ptr<Peer> const& from, Message const& message)
{
    std::lock_guard const lock(m_mutex);
    if (ReceivedForServices(from, message))
    {
        return;
    }
    auto const& verb = message.front();
    auto const words = Rest(message, 1);
    if (ReceivedFromApp(from, verb, words))
    {
        return;
    }
    if (verb == L"follow")
    {
        Follow(from);
        return;
    }
    if (verb == L"stop")
    {
        m_stop();
        return;
    }
    try
    {
        from->Send({L"ok", Answer(verb, words)});
    }
    catch (Error const& error)
    {
        from->Send({L"error", error.Message()});
    }
}

void Broker::Closed(std::shared_ptr<Peer> const& from)
{
    std::lock_guard const lock(m_mutex);
    std::erase(m_followers, from);
    m_services.Gone(*from, m_app.IsPeer(*from)); // first: what it was to get goes to the next process
    m_app.PeerClosed(*from);
}

void Broker::EndProcesses()
{
    std::lock_guard const lock(m_mutex);
    m_app.Kill();
    m_desktop.KillAll();
}

Outside Broker::OutsideOfServices()
{
    return {.activate = [this](ActivationKind kind, Words more) { Activate(kind, std::move(more)); },
            .endApp = [this] { m_app.Terminate(); },
            .report = [this](std::wstring kind, Words details) { m_journal.Add(std::move(kind), std::move(details)); },
            .familyName = [this] { return m_package ? m_package->FamilyName() : std::wstring(); },
            .declaresAppService =
                [this](std::wstring_view name) { return m_package && m_package->manifest.DeclaresAppService(name); },
            .runsInBackgroundOnly = [this] { return m_app.RunsInBackgroundOnly(); },
            .isApp = [this](Peer const& peer) { return m_app.IsPeer(peer); }};
}

void Broker::Activate(ActivationKind kind, Words more)
try
{
    m_app.Activate(NeedPackage(), kind, L"", std::move(more));
}
catch (Error const&)
{
    // Ignored: it is in the journal, and the services have heard that the activation is lost.
}

void Broker::Lost(Activation const& activation)
{
    if (!activation.more.empty())
    {
        m_services.Lost(activation.more.front());
    }
}

// False when it is nothing for the services.
bool Broker::ReceivedForServices(std::shared_ptr<Peer> const& from, Message const& message)
{
    if (message.front() == L"ask" && message.size() > 2)
    {
        m_services.Ask(from, Rest(message, 2), [from, id = message[1]](Message answer) {
            answer.insert(answer.begin(), {L"answer", id});
            from->Send(answer);
        });
        return true;
    }
    if (message.front() == L"tell" && message.size() > 1)
    {
        m_services.Tell(from, Rest(message, 1));
        return true;
    }
    return false;
}

// False when it is nothing that an app says.
bool Broker::ReceivedFromApp(std::shared_ptr<Peer> const& from, std::wstring const& verb, Words const& words)
{
    if (verb == L"hello-app")
    {
        WelcomeApp(from, words);
        return true;
    }
    if (!m_app.IsPeer(*from))
    {
        return false;
    }
    if (verb == L"taken" && words.size() == 1)
    {
        Taken(from, words[0]);
    }
    else if (verb == L"launch-desktop" && words.size() >= 2)
    {
        LaunchDesktop(*from, words);
    }
    else if (verb == L"exiting")
    {
        m_app.ExitAnnounced(*from);
    }
    else if (verb == L"fault-used" && words.size() == 1)
    {
        if (auto const fault = m_faults.Use(words[0]))
        {
            m_journal.Add(L"fault", fault->Details());
        }
    }
    else if (verb == L"report" && !words.empty())
    {
        m_journal.Add(words[0], Rest(words, 1));
    }
    return true;
}

void Broker::WelcomeApp(std::shared_ptr<Peer> const& from, Words const& words)
{
    auto const id = words.size() == 1 ? ParseNumber(words[0]) : std::nullopt;
    if (!id || !m_app.IsExpected(*id))
    {
        from->Send({L"refused"});
        return;
    }
    for (auto const& fault : m_faults.All())
    {
        from->Send(MakeMessage(L"fault", fault.Words()));
    }
    from->Send({L"welcome", NeedPackage().FamilyName(), NeedPackage().folder});
    m_app.Attach(from); // sends the first activations: they find the faults in force
}

void Broker::Taken(std::shared_ptr<Peer> const& from, std::wstring const& activationId)
{
    auto const activation = m_app.Taken(*from, activationId);
    if (activation && !activation->more.empty())
    {
        m_services.Taken(from, activation->more.front());
    }
}

void Broker::LaunchDesktop(Peer& from, Words const& words)
{
    constexpr auto unspecifiedFailure = static_cast<std::int32_t>(0x80004005);
    auto const group = words.size() > 2 ? std::optional(words[2]) : std::nullopt;
    auto result = unspecifiedFailure;
    try
    {
        result = m_desktop.Launch(NeedPackage(), words[1], group);
    }
    catch (Error const& error)
    {
        m_journal.Add(L"device-failed", {Detail(L"reason", error.Message())});
    }
    from.Send({L"launched", words[0], Hex(static_cast<std::uint32_t>(result))});
}

void Broker::Follow(std::shared_ptr<Peer> const& from)
{
    for (auto const& event : ReadJournal(m_device.JournalFile()))
    {
        from->Send({L"event", event.Line()});
    }
    m_followers.push_back(from);
}

// A package that has gone or changed for the worse since it was registered is registered no more.
void Broker::LoadRegistration()
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

Package const& Broker::NeedPackage() const
{
    if (!m_package)
    {
        throw Error(L"no package is registered: sim register FOLDER comes first");
    }
    return *m_package;
}

} // namespace sim
