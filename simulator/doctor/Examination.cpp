#include "simulator/doctor/Examination.h"

#include "doctor/live/MakeFinding.h"
#include "simulator/base/Moment.h"
#include "simulator/base/Text.h"
#include "simulator/base/UnixPath.h"
#include "simulator/doctor/LastWake.h"

#include <algorithm>
#include <cctype>
#include <iterator>

namespace sim
{

namespace
{

using doctor::Failed;
using doctor::Finding;
using doctor::Stage;
using doctor::Worked;

constexpr std::int64_t day = 24LL * 60 * 60 * 10'000'000; // in the units of the clock

std::string TimeOf(std::int64_t time)
{
    return ToUtf8(DateAndTimeText(LocalMoment(time)));
}

Finding PackageFinding(std::optional<PackageState> const& package)
{
    return package ? Worked(Stage::Package, ToUtf8(package->family) + " " + ToUtf8(package->version) +
                                                " is registered, in " + UnixPath(package->folder) + ".")
                   : Failed(Stage::Package, "No package is registered on the device.",
                            "It was never registered, or its files are gone.", "Register it: sim register.");
}

Finding NotRegistered(std::string const& what)
{
    return Failed(Stage::TasksRegistered, what, "No helper has asked for it, or the registration failed.",
                  "Register them: helper register. The app's log says what fails.");
}

Finding RegisteredTwice(std::wstring const& name, std::ptrdiff_t count)
{
    return Failed(Stage::TasksRegistered,
                  "The task " + ToUtf8(name) + " is registered " + std::to_string(count) +
                      " times: each push or timer wakes the suite as often.",
                  "Two registrations ran at the same time.",
                  "Let one helper remove them and register again: helper unregister, helper register.");
}

// For a person: the command of sim that ends the condition.
std::string EndOf(Condition condition)
{
    switch (condition)
    {
    case Condition::LoggedOff:
        return "sim logon";
    case Condition::Asleep:
        return "sim wake";
    default:
        return "sim " + ToUtf8(TraitsOf(condition).name) + " " + ToUtf8(TraitsOf(condition).ends);
    }
}

Finding HeldBackBy(Condition condition)
{
    auto const& traits = TraitsOf(condition);
    auto what = ToUtf8(traits.text) + ":";
    what[0] = static_cast<char>(std::toupper(what[0]));
    what += traits.losesPushes.empty() ? "" : " pushes are lost";
    what += traits.losesPushes.empty() || !traits.holdsTasksBack ? "" : ",";
    what += traits.holdsTasksBack ? " background tasks wait" : "";
    return Failed(Stage::Woken, what + ".", "It was said by hand: sim events has the condition.",
                  "End it: " + EndOf(condition) + ".");
}

// event: the last one of a channel that is no longer open.
std::string EndOfChannel(std::wstring_view event)
{
    if (event == L"channel-expired")
    {
        return "It is 30 days old.";
    }
    return event == L"channel-revoked" ? "It was revoked before its time." : "Its file on the device was lost.";
}

Finding NoChannel(std::vector<Event> const& journal)
{
    auto const last = std::ranges::find_if(journal.rbegin(), journal.rend(),
                                           [](Event const& event) { return event.kind.starts_with(L"channel-"); });
    return Failed(Stage::Channel, "The app has no open channel: pushes are lost.",
                  last == journal.rend() ? "No helper has asked the app for one." : EndOfChannel(last->kind),
                  "Ask for one: helper get-channel-uri.");
}

std::string DaysLeft(std::int64_t left)
{
    auto const days = left / day;
    return days == 1 ? "1 day" : std::to_string(days) + " days";
}

Finding StoredUriFinding(std::optional<std::wstring> const& stored, std::optional<ChannelState> const& channel)
{
    if (!stored)
    {
        return Failed(Stage::UriStored, "The app's settings hold no channel URI.",
                      "No helper has asked the app for one.", "Ask for one: helper get-channel-uri.");
    }
    if (!channel || channel->uri != *stored)
    {
        return Failed(Stage::UriStored, "The URI in the app's settings is not that of the open channel.",
                      "The channel ended, and nobody asked the app for the new one. The push service answers 410.",
                      "Ask for the new one: helper get-channel-uri, or wait for the timer.");
    }
    return Worked(Stage::UriStored, "The URI in the app's settings is that of the open channel.");
}

} // namespace

std::vector<Finding> RegistrationFindings(WakeState const& tasks)
{
    std::vector<Finding> findings;
    for (auto task = tasks.registered.begin(); task != tasks.registered.end(); ++task)
    {
        auto const isSame = [&](TaskState const& each) { return each.name == task->name; };
        auto const isFirst = std::find_if(tasks.registered.begin(), task, isSame) == task;
        auto const count = std::ranges::count_if(tasks.registered, isSame);
        if (isFirst && count > 1)
        {
            findings.push_back(RegisteredTwice(task->name, count));
        }
    }
    for (auto const trigger : {Trigger::Push, Trigger::Timer})
    {
        if (std::ranges::find(tasks.registered, trigger, &TaskState::trigger) == tasks.registered.end())
        {
            findings.push_back(
                NotRegistered("No background task is registered for the " + ToUtf8(NameOf(trigger)) + "."));
        }
    }
    return findings.empty()
               ? std::vector{Worked(Stage::TasksRegistered, "Both background tasks are registered, each once.")}
               : findings;
}

std::vector<Finding> ChannelFindings(Examined const& examined)
{
    auto const& state = examined.state;
    auto const left = state.channel ? state.channel->expiry - state.clock.now : 0;
    return {left > 0 ? Worked(Stage::Channel, "The channel is open for another " + DaysLeft(left) + ".")
                     : NoChannel(examined.journal),
            StoredUriFinding(examined.storedUri, left > 0 ? state.channel : std::nullopt)};
}

std::vector<Finding> HeldBackFindings(WakeState const& tasks)
{
    std::vector<Finding> findings;
    std::ranges::transform(tasks.conditions, std::back_inserter(findings), HeldBackBy);
    for (auto const& waiting : tasks.waiting)
    {
        findings.push_back(Failed(
            Stage::Woken, "Wake " + std::to_string(waiting.wake) + " waits, for the task " + ToUtf8(waiting.task) + ".",
            "One task runs at a time, and only while nothing holds it back: " + ToUtf8(waiting.reason) + ".",
            "See what runs: sim tasks."));
    }
    return findings.empty() ? std::vector{Worked(Stage::Woken, "Nothing waits, and nothing holds tasks or pushes back: "
                                                               "access, battery, network, logon and power.")}
                            : findings;
}

Finding ClockFinding(DeviceState const& state)
{
    auto text = "The device's clock says " + TimeOf(state.clock.now);
    if (auto const ahead = state.clock.minutesAhead; ahead != 0)
    {
        text += ", " + std::to_string(ahead) + " minutes ahead";
    }
    for (auto const& task : state.tasks.registered)
    {
        if (task.trigger == Trigger::Timer)
        {
            text += "; the timer is due at " + TimeOf(task.due);
        }
    }
    return Worked(Stage::Woken, text + ".");
}

Finding ProcessFinding(Examined const& examined)
{
    if (!examined.leftOver.empty())
    {
        std::string ids;
        for (auto const id : examined.leftOver)
        {
            ids += (ids.empty() ? "" : ", ") + std::to_string(id);
        }
        return Failed(Stage::Exit, "Processes run that the device does not know: " + ids + ".",
                      "The broker was killed, and they outlived it.", "End them, or all: sim stop, wineserver -k.");
    }
    auto const& processes = examined.state.processes;
    std::string const running = processes.appIsSuspended ? "The app is suspended" : "The app runs";
    auto const app = processes.appRuns ? running : "The app does not run";
    return Worked(Stage::Exit, app + "; connections to its service: " + std::to_string(processes.connections) +
                                   ", desktop components: " + std::to_string(processes.desktopComponents) +
                                   ". No process is left over.");
}

std::vector<Finding> Examine(Examined const& examined)
{
    auto const& state = examined.state;
    std::vector<Finding> findings = {PackageFinding(state.package)};
    auto const add = [&](std::vector<Finding> const& more) {
        findings.insert(findings.end(), more.begin(), more.end());
    };
    if (state.package)
    {
        add(ChannelFindings(examined));
        add(RegistrationFindings(state.tasks));
        add({ClockFinding(state)});
        add(HeldBackFindings(state.tasks));
        add(LastWakeFindings(examined.journal, state));
    }
    add({ProcessFinding(examined)});
    return findings;
}

} // namespace sim
