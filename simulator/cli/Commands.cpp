#include "simulator/cli/Commands.h"

#include "simulator/broker/Server.h"
#include "simulator/cli/Console.h"
#include "simulator/cli/RuntimeClasses.h"
#include "simulator/client/BrokerClient.h"
#include "simulator/log/LogFile.h"
#include "simulator/log/LogLine.h"
#include "simulator/log/LogWatch.h"
#include "simulator/model/Error.h"
#include "simulator/model/Fault.h"
#include "simulator/model/Files.h"
#include "simulator/model/Journal.h"
#include "simulator/model/Package.h"
#include "simulator/model/SetText.h"
#include "simulator/model/SettingsFile.h"
#include "simulator/model/Text.h"
#include "simulator/model/UnixPath.h"
#include "simulator/scenario/Player.h"
#include "simulator/services/CancellationReason.h"

#include <algorithm>

namespace sim
{

namespace
{

// Hands a command on to the broker and shows its answer.
int Ask(Message const& request)
{
    auto const answer = BrokerClient::Connect(Device::FromEnvironment())->Ask(request);
    if (!answer.empty())
    {
        WriteLine(answer);
    }
    return 0;
}

int Install(Words const&)
{
    InstallRuntimeClasses();
    WriteLine(L"the runtime classes are registered in this prefix");
    return 0;
}

int Register(Words const& words)
{
    InstallRuntimeClasses();
    return Ask({L"register", FullPath(words.empty() ? PackageFolderFromEnvironment() : words[0])});
}

int Unregister(Words const&)
{
    return Ask({L"unregister"});
}

int Launch(Words const& words)
{
    return Ask(MakeMessage(L"launch", words));
}

int Protocol(Words const& words)
{
    return Ask(MakeMessage(L"protocol", words));
}

int Suspend(Words const&)
{
    return Ask({L"suspend"});
}

int Page(Words const& words)
{
    return Ask(MakeMessage(L"page", words));
}

int Kill(Words const&)
{
    return Ask({L"kill"});
}

int Push(Words const& words)
{
    return Ask(MakeMessage(L"push", words));
}

int Clock(Words const& words)
{
    return Ask(MakeMessage(L"clock", words));
}

int RevokeChannel(Words const&)
{
    return Ask({L"revoke-channel"});
}

int CancelTasks(Words const& words)
{
    if (!CancellationReason::Parse(words[0]))
    {
        throw WrongCall(L"there is no reason " + words[0] + L"; the platform knows " + CancellationReason::Names());
    }
    return Ask(MakeMessage(L"cancel-tasks", words));
}

int Tasks(Words const&)
{
    return Ask({L"tasks"});
}

int Settings(Words const&)
{
    auto const device = Device::FromEnvironment();
    auto const family = RegisteredPackage(device).FamilyName();
    auto const set = ReadSettings(SettingsFileIn(device.PackageDataFolder(family)));
    for (auto const& entry : ParseSet(set))
    {
        WriteLine(std::wstring(entry.name) + L" (" + std::wstring(entry.type) + L"): " + ReadableValue(entry));
    }
    return 0;
}

int Status(Words const&)
{
    return Ask({L"status"});
}

int SetFault(Words const& words)
{
    if (words != Words{L"clear"})
    {
        try
        {
            ParseFault(words);
        }
        catch (Error const& error)
        {
            throw WrongCall(error.Message());
        }
    }
    return Ask(MakeMessage(L"fault", words));
}

bool WantsToFollow(Words const& words)
{
    if (!words.empty() && words[0] != L"--follow")
    {
        throw WrongCall(L"what is meant by " + words[0] + L"?");
    }
    return !words.empty();
}

void WriteNewLogLines(LogFile& file)
{
    for (auto const& text : file.NewLines())
    {
        auto const line = ParseLogLine(text);
        WriteLine(line ? line->Text() : text);
    }
}

[[noreturn]] void FollowLog(std::wstring const& path)
{
    LogFile file(path);
    for (LogWatch watch(path);; watch.Next())
    {
        WriteNewLogLines(file);
        WaitForSingleObject(watch.Get(), INFINITE);
    }
}

void WriteLogs(std::vector<std::wstring> const& paths)
{
    for (auto const& path : paths)
    {
        if (paths.size() > 1)
        {
            WriteLine(L"==> " + FromUtf8(UnixPath(path)));
        }
        LogFile file(path);
        WriteNewLogLines(file);
    }
}

int Log(Words const& words)
{
    auto const isOption = !words.empty() && StartsWith(words[0], L"--");
    if (isOption && WantsToFollow(words))
    {
        FollowLog(LogFile::PathOn(Device::FromEnvironment()));
    }
    WriteLogs(words.empty() ? Words{LogFile::PathOn(Device::FromEnvironment())}
                            : LogFile::Find(FullPath(WindowsPath(words[0]))));
    return 0;
}

int Events(Words const& words)
{
    auto const follow = WantsToFollow(words);
    auto const device = Device::FromEnvironment();
    if (!follow)
    {
        for (auto const& event : ReadJournal(device.JournalFile()))
        {
            WriteLine(event.Line());
        }
        return 0;
    }
    auto const broker = BrokerClient::Connect(device);
    for (broker->Follow();; WaitForSingleObject(broker->Arrived(), INFINITE))
    {
        while (auto const event = broker->NextEvent())
        {
            WriteLine(event->Line());
        }
    }
}

int Play(Words const& words)
{
    auto const colour = words[0] == L"--colour";
    if (words.size() != (colour ? 2u : 1u))
    {
        throw WrongCall(L"play one scenario");
    }
    InstallRuntimeClasses();
    return PlayScenario(words.back(), Device::FromEnvironment(), colour ? Colour::Yes : Colour::No) ? 0 : 1;
}

int Stop(Words const&)
{
    if (auto const broker = BrokerClient::ConnectToRunning(Device::FromEnvironment()))
    {
        broker->Stop();
        WriteLine(L"the device is switched off");
        return 0;
    }
    WriteLine(L"the device was not switched on");
    return 0;
}

int RunBroker(Words const&)
{
    Serve(Device::FromEnvironment());
    return 0;
}

std::wstring Usage(Command const& command)
{
    auto text = L"sim " + std::wstring(command.name);
    return command.synopsis.empty() ? text : text + L" " + std::wstring(command.synopsis);
}

Command const& Find(std::wstring const& name)
{
    auto const commands = Commands();
    auto const found = std::ranges::find(commands, name, &Command::name);
    if (found == commands.end())
    {
        throw WrongCall(L"there is no command " + name + L"; sim help lists them");
    }
    return *found;
}

int Help(Words const& words)
{
    if (!words.empty())
    {
        auto const& command = Find(words[0]);
        WriteLine(Usage(command));
        WriteLine(L"  " + std::wstring(command.summary));
        if (!command.help.empty())
        {
            WriteLine(command.help);
        }
        return 0;
    }
    WriteLine(L"The Windows app model for development. The device is the folder in VELMO_SIM_HOME.\n");
    for (auto const& command : Commands())
    {
        auto const usage = Usage(command);
        WriteLine(L"  " + usage + std::wstring(usage.size() < 40 ? 40 - usage.size() : 1, L' ') +
                  std::wstring(command.summary));
    }
    WriteLine(L"\nsim help COMMAND tells more of one.");
    return 0;
}

constexpr std::size_t any = SIZE_MAX;

constexpr Command commands[] = {
    {L"register", L"[FOLDER]", L"registers the package that lies in a folder",
     L"  The folder holds AppxManifest.xml and the files that it names. It is used where it lies; registering again\n"
     L"  reads it anew. Without FOLDER: the one in VELMO_SIM_PACKAGE.",
     0, 1, Register},
    {L"unregister", L"", L"removes the package and its app's data", L"", 0, 0, Unregister},
    {L"launch", L"[ARGUMENTS]", L"the user starts the app", L"", 0, 1, Launch},
    {L"protocol", L"URI", L"a URI of the app's protocol is opened", L"", 1, 1, Protocol},
    {L"suspend", L"", L"the system suspends the app: its Suspending event is raised", L"", 0, 0, Suspend},
    {L"page", L"CLASS", L"the framework makes the app's page of that class",
     L"  In each of the two ways in which it can: by activating the class, and with the type that the app tells of "
     L"it.\n"
     L"  Neither shows it. sim events tells what came of it. An app that is not running is started.",
     1, 1, Page},
    {L"kill", L"", L"ends the app's process from outside, as Task Manager does", L"", 0, 0, Kill},
    {L"push", L"[PAYLOAD]", L"a raw notification is sent to the app's channel",
     L"  The payload is under 5 KB. It is lost without an open channel, or without a task that a push triggers.", 0, 1,
     Push},
    {L"clock", L"[+TIME]", L"shows the device's clock, or puts it forward",
     L"  +15m, +24h or +30d. Timers that become due run, each once; a channel that becomes too old expires.", 0, 1,
     Clock},
    {L"revoke-channel", L"", L"ends the app's push channel before its time", L"", 0, 0, RevokeChannel},
    {L"tasks", L"", L"the registered background tasks, and those that run", L"", 0, 0, Tasks},
    {L"cancel-tasks", L"REASON", L"cancels the background tasks that run",
     L"  REASON: Abort, Terminating, LoggingOff, ServicingUpdate, IdleTask, Uninstall, ConditionLoss, SystemPolicy,\n"
     L"  QuietHoursEntered, ExecutionTimeExceeded, ResourceRevocation or EnergySaver.",
     1, 1, CancelTasks},
    {L"settings", L"", L"the app's local settings, decoded", L"", 0, 0, Settings},
    {L"status", L"", L"what the device has registered and running, and the faults in force", L"", 0, 0, Status},
    {L"log", L"[--follow | PATH]", L"the app's log file, decoded",
     L"  With --follow it stays and shows what comes. PATH is of another log file, or of a folder with such files in it\n"
     L"  or below, such as the one that a failed test names; as the shell writes it, or as Windows does.",
     0, 1, Log},
    {L"events", L"[--follow]", L"what happened on the device", L"  With --follow it stays and shows what comes.", 0, 1,
     Events},
    {L"fault", L"CALL KIND [NUMBER] [TIMES] [after CALLS] | clear", L"makes a call of the platform fail",
     L"  now RESULT         the call fails with the result code\n"
     L"  completion RESULT  its asynchronous operation fails with the result code\n"
     L"  cancelled          its asynchronous operation ends as cancelled\n"
     L"  status NUMBER      its asynchronous operation completes with the status, and does nothing\n"
     L"  never              its asynchronous operation never ends\n"
     L"  null               it succeeds and hands out null\n"
     L"  delay MS           its asynchronous operation ends that many milliseconds later\n"
     L"  ended              its asynchronous operation has ended when the call returns\n"
     L"  TIMES: how many calls it strikes; without it all. CALLS: how many go well before. fault clear takes all\n"
     L"  faults away.\n"
     L"  A class name alone (CoreApplication) stands for getting the class. A wrong name lists the known calls.\n"
     L"  Example: sim fault FullTrustProcessLauncher.LaunchFullTrustProcessForCurrentAppAsync completion 0x80070005 1",
     1, any, SetFault},
    {L"play", L"[--colour] SCENARIO", L"plays a scenario file on a fresh device, checking every step",
     L"  What the device held before is removed. Exit code 1 when anything differs.", 1, 2, Play},
    {L"stop", L"", L"switches the device off, with everything that runs on it", L"", 0, 0, Stop},
    {L"install", L"", L"registers the simulator's runtime classes in this Wine prefix",
     L"  register and play do it, too.", 0, 0, Install},
    {L"broker", L"", L"serves the device; the other commands start it when needed", L"", 0, 0, RunBroker},
    {L"help", L"[COMMAND]", L"this list, or more of one command", L"", 0, 1, Help},
};

int Run(Words const& words)
{
    auto const& command = Find(words.empty() ? L"help" : words[0]);
    Words const arguments(words.begin() + (words.empty() ? 0 : 1), words.end());
    if (arguments.size() < command.fewestWords || arguments.size() > command.mostWords)
    {
        throw WrongCall(L"call it so: " + Usage(command));
    }
    return command.run(arguments);
}

} // namespace

std::span<Command const> Commands()
{
    return commands;
}

int RunCommand(Words const& words)
try
{
    return Run(words);
}
catch (WrongCall const& wrong)
{
    WriteErrorLine(L"sim: " + wrong.Message());
    return 2;
}
catch (Error const& error)
{
    WriteErrorLine(L"sim: " + error.Message());
    return 1;
}

} // namespace sim
