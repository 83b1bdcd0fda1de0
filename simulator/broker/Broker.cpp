#include "simulator/broker/Broker.h"

#include "simulator/model/Error.h"
#include "simulator/model/Files.h"
#include "simulator/model/KnownCalls.h"
#include "simulator/model/Text.h"

#include <algorithm>
#include <windows.h>

namespace sim
{

namespace
{

std::vector<std::wstring> Rest(Message const& message, std::size_t from)
{
    return {message.begin() + static_cast<std::ptrdiff_t>(std::min(from, message.size())), message.end()};
}

Message FaultMessage(Fault const& fault)
{
    Message message = {L"fault"};
    auto const words = fault.Words();
    message.insert(message.end(), words.begin(), words.end());
    return message;
}

std::wstring OnlyWord(std::vector<std::wstring> const& words, std::wstring const& what)
{
    if (words.size() != 1)
    {
        throw Error(L"give one " + what);
    }
    return words.front();
}

} // namespace

Broker::Broker(Device const& device, std::unique_ptr<ProcessStarter> processes, std::function<void()> stop)
    : m_device(device), m_journal((MakeFolder(device.Home()), device.JournalFile())), m_stop(std::move(stop)),
      m_app(m_device, m_journal, *processes, m_mutex), m_desktop(m_device, m_journal, *processes, m_mutex),
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
    auto const& verb = message.front();
    auto const words = Rest(message, 1);
    std::lock_guard const lock(m_mutex);
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
    m_app.PeerClosed(*from);
}

void Broker::EndProcesses()
{
    std::lock_guard const lock(m_mutex);
    m_app.Kill();
    m_desktop.KillAll();
}

// False when it is nothing that an app says.
bool Broker::ReceivedFromApp(std::shared_ptr<Peer> const& from, std::wstring const& verb, Words const& words)
{
    if (verb == L"hello-app")
    {
        Welcome(from, words);
        return true;
    }
    if (!m_app.IsPeer(*from))
    {
        return false;
    }
    if (verb == L"taken" && words.size() == 1)
    {
        m_app.Taken(*from, words[0]);
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
        if (auto const fault = m_faults.Take(words[0]))
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

void Broker::Welcome(std::shared_ptr<Peer> const& from, Words const& words)
{
    auto const id = words.size() == 1 ? ParseNumber(words[0]) : std::nullopt;
    if (!id || !m_app.IsExpected(*id))
    {
        from->Send({L"refused"});
        return;
    }
    for (auto const& fault : m_faults.All())
    {
        from->Send(FaultMessage(fault));
    }
    from->Send({L"welcome"});
    m_app.Attach(from); // sends the first activations: they find the faults in force
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

std::wstring Broker::Answer(std::wstring const& verb, Words const& words)
{
    if (verb == L"register")
    {
        return Register(words);
    }
    if (verb == L"unregister")
    {
        return Unregister();
    }
    if (verb == L"launch")
    {
        return Launch(words);
    }
    if (verb == L"protocol")
    {
        return Protocol(words);
    }
    if (verb == L"suspend" || verb == L"kill")
    {
        if (!m_app.IsRunning())
        {
            throw Error(L"the app is not running");
        }
        verb == L"kill" ? m_app.Kill() : m_app.Activate(NeedPackage(), ActivationKind::Suspend, L"");
        return L"";
    }
    if (verb == L"fault")
    {
        return SetFault(words);
    }
    if (verb == L"status")
    {
        return Status();
    }
    if (verb == L"process")
    {
        return std::to_wstring(GetCurrentProcessId());
    }
    throw Error(L"the broker knows no " + verb);
}

std::wstring Broker::Register(Words const& words)
{
    auto package = OpenPackage(OnlyWord(words, L"folder with the package's files"));
    NeedNoApp();
    WriteBytes(m_device.RegistrationFile(), ToUtf8(package.folder));
    m_package = std::move(package);
    m_journal.Add(L"package-registered",
                  {Detail(L"family", m_package->FamilyName()), Detail(L"version", m_package->manifest.version)});
    return m_package->FamilyName();
}

// As on the platform, the app's data go with it.
std::wstring Broker::Unregister()
{
    auto const family = NeedPackage().FamilyName();
    NeedNoApp();
    Remove(m_device.RegistrationFile());
    Remove(m_device.PackageDataFolder(family));
    m_package.reset();
    m_journal.Add(L"package-unregistered", {Detail(L"family", family)});
    return family;
}

std::wstring Broker::Launch(Words const& words)
{
    m_app.Activate(NeedPackage(), ActivationKind::Launch, words.empty() ? L"" : OnlyWord(words, L"text of arguments"));
    return m_app.Status();
}

std::wstring Broker::Protocol(Words const& words)
{
    auto const& package = NeedPackage();
    auto const uri = OnlyWord(words, L"URI");
    auto const scheme = uri.substr(0, uri.find(L':'));
    auto const& declared = package.manifest.protocols;
    if (scheme.size() == uri.size() ||
        std::none_of(declared.begin(), declared.end(), [&](auto const& p) { return EqualIgnoringCase(p, scheme); }))
    {
        std::wstring known;
        for (auto const& protocol : declared)
        {
            known += L" " + protocol + L":";
        }
        throw Error(uri + L" is for none of the protocols that the package declares:" +
                    (known.empty() ? L" it declares none" : known));
    }
    m_app.Activate(package, ActivationKind::Protocol, uri);
    return m_app.Status();
}

std::wstring Broker::SetFault(Words const& words)
{
    if (words.size() == 1 && words[0] == L"clear")
    {
        m_faults.Clear();
        m_app.Send({L"faults-clear"});
        return L"";
    }
    auto const fault = ParseFault(words);
    m_faults.Set(fault);
    m_app.Send(FaultMessage(fault));
    return L"";
}

std::wstring Broker::Status() const
{
    auto text = L"device    " + m_device.Home() + L"\npackage   ";
    text += m_package ? m_package->FamilyName() + L" " + m_package->manifest.version + L" in " + m_package->folder
                      : L"none registered";
    text += L"\napp       " + m_app.Status();
    text += L"\ndesktop   processes running: " + std::to_wstring(m_desktop.RunningCount());
    for (auto const& fault : m_faults.All())
    {
        text += L"\nfault    ";
        for (auto const& word : fault.Words())
        {
            text += L" " + word;
        }
    }
    return text;
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
        m_package = OpenPackage(FromUtf8(ReadBytes(m_device.RegistrationFile())));
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

void Broker::NeedNoApp() const
{
    if (m_app.IsRunning())
    {
        throw Error(L"the app is running; wait for its end, or end it with sim kill");
    }
}

} // namespace sim
