#include "simulator/client/DeviceCommands.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Text.h"
#include "simulator/base/UnixPath.h"
#include "simulator/package/Package.h"
#include "simulator/protocol/CancellationReason.h"

#include <algorithm>
#include <cstdint>

namespace sim
{

namespace
{

// Empty when there are no words.
std::wstring FirstOf(Words const& words)
{
    return words.empty() ? std::wstring() : words.front();
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
        throw Error(L"expected a time such as +15m, +24h or +30d");
    }
    return *number * unit->second;
}

std::uint32_t ReasonNamed(std::wstring const& name)
{
    auto const reason = CancellationReason::Parse(name);
    return reason ? *reason
                  : throw Error(L"there is no reason " + name + L"; the platform knows " + CancellationReason::Names());
}

template <typename Request>
AnyRequest Plain(Words const&)
{
    return Request{};
}

// [--force] [FOLDER]
template <typename Request>
AnyRequest Install(Words const& words)
{
    auto rest = words;
    auto const isForced = TakeOption(rest, L"--force");
    if (rest.size() > 1)
    {
        throw Error(L"expected one folder");
    }
    return Request{FullPath(rest.empty() ? PackageFolderFromEnvironment() : WindowsPath(rest[0])), isForced};
}

// With one text, or none.
template <typename Request>
AnyRequest OfText(Words const& words)
{
    return Request{FirstOf(words)};
}

AnyRequest SendPush(Words const& words)
{
    auto rest = words;
    auto const hasUri = TakeOption(rest, L"--uri");
    if (hasUri ? rest.empty() : rest.size() > 1)
    {
        throw Error(L"usage: push [--uri URI] [PAYLOAD]");
    }
    return hasUri ? Push{FirstOf({rest.begin() + 1, rest.end()}), rest[0]} : Push{FirstOf(rest)};
}

template <Condition condition>
AnyRequest Change(Words const& words)
{
    auto const& known = TraitsOf(condition);
    if (words[0] != known.holds && words[0] != known.ends)
    {
        throw Error(std::wstring(known.name) + L" is " + std::wstring(known.holds) + L" or " +
                    std::wstring(known.ends));
    }
    return SetCondition{condition, words[0] == known.holds};
}

// Of a condition that has a command for its beginning and one for its end.
template <Condition condition, bool holds>
AnyRequest Put(Words const&)
{
    return SetCondition{condition, holds};
}

AnyRequest Clock(Words const& words)
{
    return AdvanceClock{words.empty() ? 0 : MinutesIn(words[0])};
}

AnyRequest Cancel(Words const& words)
{
    return CancelTasks{ReasonNamed(words[0])};
}

AnyRequest ChangeFaults(Words const& words)
{
    return words == Words{L"clear"} ? AnyRequest(ClearFaults{}) : SetFault{ParseFault(words)};
}

constexpr DeviceCommand commands[] = {
    {L"register", L"[--force] [FOLDER]", L"registers the package that lies in a folder",
     L"  The folder holds AppxManifest.xml and the files that it names. It is used where it lies; registering again\n"
     L"  reads its manifest again. Without FOLDER: the one in VELMO_SIM_PACKAGE. A version lower than the registered\n"
     L"  one is refused, but with --force.",
     0, 2, Install<RegisterPackage>},
    {L"update", L"[--force] [FOLDER]", L"the same for the registered package, while its app runs, too",
     L"  Its background tasks are cancelled with ServicingUpdate, and its process is ended. What comes meanwhile is for\n"
     L"  the new version.",
     0, 2, Install<UpdatePackage>},
    {L"unregister", L"", L"removes the package with all that the device keeps for it", L"", 0, 0,
     Plain<UnregisterPackage>},
    {L"launch", L"[ARGUMENTS]", L"the user starts the app", L"", 0, 1, OfText<LaunchApp>},
    {L"protocol", L"URI", L"a URI of the app's protocol is opened", L"", 1, 1, OfText<OpenUri>},
    {L"suspend", L"", L"the system suspends the app",
     L"  Its Suspending event is raised. When that is dealt with, an app that nothing needs is suspended: its process\n"
     L"  stops until the next activation. An idle app is suspended by itself, and ended soon afterwards.",
     0, 0, Plain<SuspendApp>},
    {L"page", L"CLASS", L"the framework makes the app's page of that class",
     L"  By activating the class, and through the app's XAML type information. Neither displays the page. sim events\n"
     L"  shows the result. An app that is not running is started.",
     1, 1, OfText<RequestPage>},
    {L"kill", L"", L"ends the app's process from outside, as Task Manager does", L"", 0, 0, Plain<KillApp>},
    {L"push", L"[--uri URI] [PAYLOAD]", L"a raw notification is sent to the app's channel",
     L"  The payload is under 5 KB. It is lost without an open channel, or without a task that a push triggers. To a\n"
     L"  URI that is not the open channel's the push service answers 404, or 410 once that channel has ended.",
     0, 3, SendPush},
    {L"access", L"denied | allowed", L"the user denies the app background access, or allows it",
     L"  While it is denied background tasks wait. They may be registered.", 1, 1, Change<Condition::AccessDenied>},
    {L"battery", L"saver | normal", L"the battery saver is on, or not",
     L"  When it comes on the background task that runs is cancelled with EnergySaver; while it is on tasks wait.", 1,
     1, Change<Condition::BatterySaver>},
    {L"network", L"off | on", L"the device has no network, or has it", L"  Without it raw notifications are lost.", 1,
     1, Change<Condition::NetworkOff>},
    {L"logoff", L"", L"the user logs off",
     L"  The background tasks that run are cancelled with LoggingOff, then the app is ended. Until sim logon pushes are\n"
     L"  lost and timers wait. A shutdown begins so: sim restart goes on with it.",
     0, 0, Put<Condition::LoggedOff, true>},
    {L"logon", L"", L"the user logs on again", L"", 0, 0, Put<Condition::LoggedOff, false>},
    {L"sleep", L"", L"the device goes to sleep",
     L"  The background tasks that run are cancelled with SystemPolicy, then the app is suspended. Until sim wake pushes\n"
     L"  are lost and timers wait.",
     0, 0, Put<Condition::Asleep, true>},
    {L"wake", L"", L"the device wakes up", L"", 0, 0, Put<Condition::Asleep, false>},
    {L"clock", L"[+TIME]", L"shows the device's clock, or puts it forward",
     L"  +15m, +24h or +30d. Timers that become due run, each once; a channel that becomes too old expires.", 0, 1,
     Clock},
    {L"revoke-channel", L"", L"ends the app's push channel before its time", L"", 0, 0, Plain<RevokeChannel>},
    {L"tasks", L"", L"the registered background tasks, and those that run", L"", 0, 0, Plain<ShowTasks>},
    {L"cancel-tasks", L"REASON", L"cancels the background tasks that run",
     L"  REASON: Abort, Terminating, LoggingOff, ServicingUpdate, IdleTask, Uninstall, ConditionLoss, SystemPolicy,\n"
     L"  QuietHoursEntered, ExecutionTimeExceeded, ResourceRevocation or EnergySaver.",
     1, 1, Cancel},
    {L"status", L"", L"what the device has registered and running, and the faults in force", L"", 0, 0,
     Plain<ShowStatus>},
    {L"fault", L"CALL KIND [NUMBER] [TIMES] [after CALLS] | clear", L"makes a call of the platform fail",
     L"  now RESULT         the call fails with the HRESULT\n"
     L"  completion RESULT  its asynchronous operation fails with the HRESULT\n"
     L"  cancelled          its asynchronous operation completes as cancelled\n"
     L"  status NUMBER      its asynchronous operation completes with the status, and does nothing\n"
     L"  never              its asynchronous operation never completes\n"
     L"  null               it succeeds and returns null\n"
     L"  delay MS           its asynchronous operation completes that many milliseconds later\n"
     L"  held               its asynchronous operation completes as usual, once the faults are cleared\n"
     L"  unheard RESULT     setting the completion handler of its asynchronous operation fails with the HRESULT\n"
     L"  ended              its asynchronous operation has completed when the call returns\n"
     L"  TIMES: how many calls fail; without it all. CALLS: how many succeed before. fault clear removes all faults.\n"
     L"  A class name alone (CoreApplication) stands for its activation factory. A wrong name lists the known calls.\n"
     L"  Example: sim fault FullTrustProcessLauncher.LaunchFullTrustProcessForCurrentAppAsync completion 0x80070005 1",
     1, anyNumber, ChangeFaults},
};

} // namespace

std::span<DeviceCommand const> DeviceCommands()
{
    return commands;
}

AnyRequest RequestFor(Words const& words)
try
{
    auto const* const command = FindCommand(commands, words);
    if (!command)
    {
        throw Error(words.empty() ? L"an empty command" : L"there is no command " + words[0]);
    }
    return command->run(command->ArgumentsOf(words));
}
catch (Error const& error)
{
    throw UsageError(error.Message());
}

} // namespace sim
