#include "simulator/broker/Broker.h"
#include "simulator/model/Error.h"
#include "simulator/model/Files.h"
#include "simulator/model/Text.h"
#include "simulator/services/CancellationReason.h"

#include <algorithm>
#include <windows.h>

namespace sim
{

namespace
{

std::wstring OnlyWord(std::vector<std::wstring> const& words, std::wstring const& what)
{
    if (words.size() != 1)
    {
        throw Error(L"give one " + what);
    }
    return words.front();
}

// +15m, +24h, +30d
std::int64_t MinutesIn(std::wstring const& step)
{
    constexpr std::pair<wchar_t, std::int64_t> units[] = {{L'm', 1}, {L'h', 60}, {L'd', 24 * 60}};
    auto const isForward = step.size() > 2 && step.front() == L'+';
    auto const number = isForward ? ParseNumber(step.substr(1, step.size() - 2)) : std::nullopt;
    auto const* const unit =
        std::ranges::find(units, step.empty() ? L' ' : step.back(), [](auto const& u) { return u.first; });
    if (!number || *number == 0 || unit == std::end(units))
    {
        throw Error(L"the clock is put forward so: +15m, +24h or +30d");
    }
    return *number * unit->second;
}

} // namespace

std::wstring Broker::Answer(std::wstring const& verb, Words const& words)
{
    struct Command
    {
        std::wstring_view verb;
        std::wstring (Broker::*run)(Words const& words);
    };

    static constexpr Command commands[] = {
        {L"register", &Broker::Register},
        {L"unregister", &Broker::Unregister},
        {L"launch", &Broker::Launch},
        {L"protocol", &Broker::Protocol},
        {L"suspend", &Broker::Suspend},
        {L"page", &Broker::MakePage},
        {L"kill", &Broker::Kill},
        {L"push", &Broker::Push},
        {L"clock", &Broker::Clock},
        {L"revoke-channel", &Broker::RevokeChannel},
        {L"cancel-tasks", &Broker::CancelTasks},
        {L"tasks", &Broker::Tasks},
        {L"fault", &Broker::SetFault},
        {L"status", &Broker::Status},
        {L"process", &Broker::ProcessId},
    };
    auto const* const found = std::ranges::find(commands, verb, &Command::verb);
    if (found == std::end(commands))
    {
        throw Error(L"the broker knows no " + verb);
    }
    return (this->*found->run)(words);
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
std::wstring Broker::Unregister(Words const&)
{
    auto const family = NeedPackage().FamilyName();
    NeedNoApp();
    Remove(m_device.RegistrationFile());
    Remove(m_device.PackageDataFolder(family));
    m_services.PackageRemoved();
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
        std::ranges::none_of(declared, [&](auto const& p) { return EqualIgnoringCase(p, scheme); }))
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

std::wstring Broker::Suspend(Words const&)
{
    NeedApp();
    m_app.Activate(NeedPackage(), ActivationKind::Suspend, L"");
    return L"";
}

std::wstring Broker::MakePage(Words const& words)
{
    m_app.Activate(NeedPackage(), ActivationKind::Page, OnlyWord(words, L"runtime class of a page"));
    return m_app.Status();
}

std::wstring Broker::Kill(Words const&)
{
    NeedApp();
    m_app.Kill();
    return L"";
}

std::wstring Broker::Push(Words const& words)
{
    NeedPackage();
    return m_services.Push(words.empty() ? L"" : OnlyWord(words, L"payload"));
}

std::wstring Broker::Clock(Words const& words)
{
    if (!words.empty())
    {
        m_services.AdvanceClock(MinutesIn(OnlyWord(words, L"time, such as +24h")));
    }
    return m_services.ClockText();
}

std::wstring Broker::RevokeChannel(Words const&)
{
    m_services.RevokeChannel();
    return L"";
}

std::wstring Broker::CancelTasks(Words const& words)
{
    auto const reason = CancellationReason::Parse(OnlyWord(words, L"reason"));
    if (!reason)
    {
        throw Error(L"there is no reason " + words[0] + L"; the platform knows " + CancellationReason::Names());
    }
    m_services.CancelTasks(*reason);
    return L"";
}

std::wstring Broker::Tasks(Words const&)
{
    return m_services.Tasks();
}

std::wstring Broker::ProcessId(Words const&)
{
    return std::to_wstring(GetCurrentProcessId());
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
    m_app.Send(MakeMessage(L"fault", fault.Words()));
    return L"";
}

std::wstring Broker::Status(Words const&)
{
    auto text = L"device    " + m_device.Home() + L"\npackage   ";
    text += m_package ? m_package->FamilyName() + L" " + m_package->manifest.version + L" in " + m_package->folder
                      : L"none registered";
    text += L"\napp       " + m_app.Status();
    text +=
        L"\ndesktop   processes running: " + std::to_wstring(m_desktop.RunningCount()) + L"\n" + m_services.Status();
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

void Broker::NeedApp() const
{
    if (!m_app.IsRunning())
    {
        throw Error(L"the app is not running");
    }
}

void Broker::NeedNoApp() const
{
    if (m_app.IsRunning())
    {
        throw Error(L"the app is running; wait for its end, or end it with sim kill");
    }
}

} // namespace sim
