#include "simulator/base/Error.h"
#include "simulator/platform/Platform.h"
#include "simulator/protocol/CancellationReason.h"

namespace sim
{

Shown Platform::AnswerTo(Peer const&, RegisterPackage const& request)
{
    auto package = OpenFor(request.folder, request.isForced);
    RequireNoApp();
    m_registration.Set(std::move(package));
    LoadState();
    return {m_registration.Require().FamilyName()};
}

Shown Platform::AnswerTo(Peer const&, UnregisterPackage const&)
{
    auto const family = m_registration.Require().FamilyName();
    RequireNoApp();
    m_registration.Remove();
    LoadState();
    return {family};
}

void Platform::Answer(From const& from, std::uint32_t number, UpdatePackage const& request)
{
    auto const family = m_registration.Require().FamilyName();
    auto package = OpenFor(request.folder, request.isForced);
    if (package.FamilyName() != family)
    {
        throw Error(package.FamilyName() + L" is no update of " + family + L"; sim register puts it in its place");
    }
    if (m_update)
    {
        throw Error(L"the package is being updated already");
    }
    m_update = Update{std::move(package), ReplyTo(from, number)};
    StopAppFor(CancellationReason::servicingUpdate);
}

Shown Platform::AnswerTo(Peer const&, SetCondition const& request)
{
    auto const& traits = TraitsOf(request.condition);
    m_tasks.Set(request);
    request.holds&& traits.stopsTheApp&& traits.cancels ? StopAppFor(*traits.cancels) : ContinueStop();
    if (request.holds && request.condition == Condition::LoggedOff)
    {
        m_desktop.KillAll();
    }
    return {};
}

void Platform::StopAppFor(std::uint32_t reason)
{
    m_app.Hold();
    m_instances.CancelRunning(reason);
    ContinueStop();
}

// The running tasks end first, then the process is terminated or, for sleep, suspended. Held activations are for the
// next process, or for the same one after the sleep.
void Platform::ContinueStop()
{
    if (!m_update && m_tasks.StoppedBy().empty())
    {
        if (m_app.IsHeld())
        {
            Lost(m_app.Release());
            m_lifetime.CheckIdle();
        }
        return;
    }
    if (m_instances.IsAnyRunning())
    {
        return;
    }
    if (m_tasks.Holds(Condition::Asleep))
    {
        m_app.Suspend();
        return;
    }
    if (m_app.IsRunning())
    {
        m_app.Terminate();
        return;
    }
    if (auto update = std::exchange(m_update, std::nullopt))
    {
        Finish(*update);
        ContinueStop();
    }
}

void Platform::Finish(Update& update)
{
    try
    {
        m_registration.Set(std::move(update.package));
        update.reply(Shown{m_registration.Require().FamilyName()});
    }
    catch (Error const& error)
    {
        update.reply(Refused{error.Message()});
    }
}

Package Platform::OpenFor(std::wstring const& folder, bool isForced) const
{
    auto package = OpenPackage(folder);
    if (!isForced)
    {
        m_registration.RequireNoDowngradeTo(package);
    }
    return package;
}

// Channel and tasks belong to the registered package's family.
void Platform::LoadState()
{
    auto const* const package = m_registration.Current();
    m_channel.Load(package ? m_device.ChannelFile(package->FamilyName()) : std::wstring());
    m_tasks.Load(package ? m_device.TasksFile(package->FamilyName()) : std::wstring());
}

} // namespace sim
