#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Text.h"
#include "simulator/platform/Platform.h"

#include <algorithm>
#include <windows.h>

namespace sim
{

Shown Platform::AnswerTo(Peer const&, LaunchApp const& request)
{
    return Activate(UserLaunch{request.arguments});
}

Shown Platform::AnswerTo(Peer const&, OpenUri const& request)
{
    auto const scheme = request.uri.substr(0, request.uri.find(L':'));
    auto const& declared = m_registration.Require().manifest.protocols;
    if (scheme.size() == request.uri.size() ||
        std::ranges::none_of(declared, [&](auto const& protocol) { return EqualIgnoringCase(protocol, scheme); }))
    {
        std::wstring known;
        for (auto const& protocol : declared)
        {
            known += L" " + protocol + L":";
        }
        throw Error(request.uri + L" is for none of the protocols that the package declares:" +
                    (known.empty() ? L" it declares none" : known));
    }
    return Activate(ProtocolLaunch{request.uri});
}

Shown Platform::AnswerTo(Peer const&, SuspendApp const&)
{
    RequireApp();
    if (m_app.IsSuspended())
    {
        throw Error(L"the app is suspended already");
    }
    m_lifetime.Suspend();
    return {};
}

Shown Platform::AnswerTo(Peer const&, RequestPage const& request)
{
    return Activate(PageRequest{request.className});
}

Shown Platform::AnswerTo(Peer const&, KillApp const&)
{
    RequireApp();
    m_app.Kill();
    return {};
}

Shown Platform::AnswerTo(Peer const&, Push const& request)
{
    static_cast<void>(m_registration.Require());
    m_channel.ClockAdvanced();
    return {m_tasks.Push(m_channel, request)};
}

Shown Platform::AnswerTo(Peer const&, AdvanceClock const& request)
{
    if (request.minutes > 0)
    {
        m_clock.Advance(request.minutes);
        m_journal.Add(L"clock-advanced", {Detail(L"to", m_clock.Text())});
        m_channel.ClockAdvanced();
        m_tasks.RunDue();
    }
    return {m_clock.Text()};
}

Shown Platform::AnswerTo(Peer const&, RevokeChannel const&)
{
    m_channel.Revoke();
    return {};
}

Shown Platform::AnswerTo(Peer const&, CancelTasks const& request)
{
    m_instances.CancelAll(request.reason);
    return {};
}

Shown Platform::AnswerTo(Peer const&, ShowTasks const&)
{
    return {L"registered:" + m_tasks.Text() + L"\nrunning:" + m_instances.Text() + m_tasks.WaitingText()};
}

Shown Platform::AnswerTo(Peer const&, SetFault const& request)
{
    m_faults.Set(request.fault);
    SaveSession();
    m_app.Send(FaultSet{request.fault});
    return {};
}

Shown Platform::AnswerTo(Peer const&, ClearFaults const&)
{
    m_faults.Clear();
    SaveSession();
    m_app.Send(FaultsCleared{});
    return {};
}

Shown Platform::AnswerTo(Peer const&, ShowStatus const&)
{
    auto const* const package = m_registration.Current();
    auto text = L"device    " + m_device.Home() + L"\npackage   ";
    text += package ? package->FamilyName() + L" " + package->manifest.version + L" in " + package->folder
                    : L"none registered";
    text += L"\napp       " + m_app.Status();
    text += L"\ndesktop   processes running: " + std::to_wstring(m_desktop.RunningCount());
    text += L"\nclock     " + m_clock.Text();
    text += L"\nchannel   " + m_channel.Status();
    text += L"\ntasks     registered: " + std::to_wstring(m_tasks.All().size()) + L", running: " +
            std::to_wstring(m_instances.Count());
    text += L"\nservice   connections: " + std::to_wstring(m_services.Count());
    text += m_tasks.ConditionText();
    for (auto const& file : m_device.StateFiles(package ? package->FamilyName() : L""))
    {
        auto const damaged = Device::SetAside(file);
        text += FileExists(damaged) ? L"\ndamaged   " + damaged + L" was set aside; sim events tells why" : L"";
    }
    for (auto const& fault : m_faults.All())
    {
        text += L"\nfault    ";
        for (auto const& word : fault.Words())
        {
            text += L" " + word;
        }
    }
    return {text};
}

DeviceState Platform::AnswerTo(Peer const&, DescribeDevice const&)
{
    DeviceState state;
    if (auto const* const package = m_registration.Current())
    {
        state.package = {package->FamilyName(), package->manifest.version, package->folder};
    }
    state.processes = {m_app.IsRunning(), m_app.IsSuspended(), static_cast<std::uint32_t>(m_desktop.RunningCount()),
                       static_cast<std::uint32_t>(m_services.Count())};
    state.clock = {m_clock.Now(), m_clock.MinutesAhead(), m_sessionStart.value_or(0)};
    if (auto const& channel = m_channel.Current())
    {
        state.channel = {channel->uri, channel->expiry};
    }
    state.tasks = m_tasks.State();
    return state;
}

Shown Platform::AnswerTo(Peer const&, ShowProcess const&)
{
    return {std::to_wstring(GetCurrentProcessId())};
}

Shown Platform::Activate(Activation::Content content)
{
    if (auto const stop = m_tasks.StoppedBy(); !stop.empty())
    {
        throw Error(std::wstring(stop));
    }
    m_app.Activate(std::move(content));
    return {m_app.Status()};
}

void Platform::RequireApp() const
{
    if (!m_app.IsRunning())
    {
        throw Error(L"the app is not running");
    }
}

void Platform::RequireNoApp() const
{
    if (m_app.IsRunning())
    {
        throw Error(L"the app is running; wait for its end, or end it with sim kill");
    }
}

} // namespace sim
