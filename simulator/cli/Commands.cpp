#include "simulator/cli/Commands.h"

#include "console/Console.h"
#include "doctor/CommandLine.h"
#include "doctor/base/Console.h"
#include "doctor/base/Error.h"
#include "doctor/cli/LocalNow.h"
#include "doctor/log/LogFolder.h"
#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Text.h"
#include "simulator/base/UnixPath.h"
#include "simulator/broker/Server.h"
#include "simulator/cli/RuntimeClasses.h"
#include "simulator/client/BrokerClient.h"
#include "simulator/client/DeviceCommands.h"
#include "simulator/doctor/DoctorCommand.h"
#include "simulator/log/AppLog.h"
#include "simulator/package/Package.h"
#include "simulator/platform/Journal.h"
#include "simulator/protocol/SettingsFile.h"
#include "simulator/scenario/Play.h"
#include "simulator/scenario/Player.h"
#include "simulator/scenario/Record.h"

#include <algorithm>

namespace sim
{

namespace
{

// Prints what the device answers.
int Ask(AnyRequest request)
{
    if (std::holds_alternative<RegisterPackage>(request) || std::holds_alternative<UpdatePackage>(request))
    {
        InstallRuntimeClasses();
    }
    auto const answer = BrokerClient::Connect(Device::FromEnvironment())->Ask(std::move(request));
    if (!answer.empty())
    {
        console::WriteLine(answer);
    }
    return 0;
}

int Install(Words const&)
{
    InstallRuntimeClasses();
    console::WriteLine(L"the runtime classes are registered in this prefix");
    return 0;
}

int Settings(Words const&)
{
    auto const device = Device::FromEnvironment();
    auto const family = RegisteredPackage(device).FamilyName();
    for (auto const& entry : ReadSettings(SettingsFileIn(device.PackageDataFolder(family))))
    {
        console::WriteLine(entry.name + L" (" + TypeName(entry) + L"): " + ReadableValue(entry));
    }
    return 0;
}

bool WantsToFollow(Words const& words)
{
    if (!words.empty() && words[0] != L"--follow")
    {
        throw UsageError(L"unexpected argument " + words[0]);
    }
    return !words.empty();
}

// Fails as the doctor's own functions do, so that it tells why.
std::filesystem::path DeviceLog()
try
{
    return AppLogOn(Device::FromEnvironment());
}
catch (Error const& error)
{
    throw doctor::Error(ToUtf8(error.Message()));
}

// What the doctor shows of the device's log, or of others.
int Log(Words const& words)
{
    std::vector<std::string> options = {"show"};
    std::ranges::transform(words, std::back_inserter(options), ToUtf8);
    auto const outcome = doctor::RunCommandLine(std::move(options), {.write = doctor::WriteLine,
                                                                     .writeError = doctor::WriteErrorLine,
                                                                     .pause = [] { Sleep(logPollMilliseconds); },
                                                                     .now = doctor::LocalNow,
                                                                     .ownLog = DeviceLog});
    return static_cast<int>(outcome);
}

int Events(Words const& words)
{
    auto const follow = WantsToFollow(words);
    auto const device = Device::FromEnvironment();
    if (!follow)
    {
        for (auto const& event : ReadJournal(device.JournalFile()))
        {
            console::WriteLine(event.Line());
        }
        return 0;
    }
    auto const broker = BrokerClient::Connect(device);
    for (broker->Follow();; WaitForSingleObject(broker->Arrived(), INFINITE))
    {
        while (auto const event = broker->NextEvent())
        {
            console::WriteLine(event->Line());
        }
    }
}

// Takes the file behind an option away, which is to be written.
std::wstring TakeFile(Words& words, std::wstring const& option)
{
    if (words.empty() || words[0].starts_with(L"--"))
    {
        throw UsageError(option + L" needs a file");
    }
    auto const path = WindowsPath(words[0]);
    if (doctor::HasLogName(path))
    {
        throw UsageError(option + L": '" + words[0] + L"' is named as a log, which would be overwritten");
    }
    words.erase(words.begin());
    return path;
}

struct PlayWords
{
    PlayOptions options;
    bool records = false;
};

// Takes the options away.
PlayWords TakePlayWords(Words& words)
{
    PlayWords taken;
    auto& [options, records] = taken;
    while (!words.empty() && words[0].starts_with(L"--"))
    {
        auto const option = words[0];
        words.erase(words.begin());
        if (option == L"--colour")
        {
            options.colour = Colour::Yes;
        }
        else if (option == L"--verdict")
        {
            options.hasVerdict = true;
        }
        else if (option == L"--record")
        {
            records = true;
        }
        else if (option == L"--html" || option == L"--trace")
        {
            (option == L"--html" ? options.files.page : options.files.trace) = TakeFile(words, option);
        }
        else
        {
            throw UsageError(L"unexpected argument " + option);
        }
    }
    return taken;
}

int Play(Words const& words)
{
    auto rest = words;
    auto const [options, records] = TakePlayWords(rest);
    if (rest.size() != 1)
    {
        throw UsageError(L"expected one scenario");
    }
    if (records && (options.hasVerdict || !options.files.page.empty() || !options.files.trace.empty()))
    {
        throw UsageError(L"--record goes with none of --verdict, --html and --trace: play what it has recorded");
    }
    InstallRuntimeClasses();
    auto const path = WindowsPath(rest[0]);
    auto const device = Device::FromEnvironment();
    auto const went = records ? RecordScenario(path, device, options.colour) : PlayScenario(path, device, options);
    return went ? 0 : 1;
}

int Stop(Words const&)
{
    console::WriteLine(BrokerClient::StopRunning(Device::FromEnvironment()) ? L"the device is switched off"
                                                                            : L"the device was not switched on");
    return 0;
}

int Restart(Words const&)
{
    auto const device = Device::FromEnvironment();
    BrokerClient::StopRunning(device);
    BrokerClient::Connect(device);
    console::WriteLine(L"the device is switched off and on again");
    return 0;
}

int RunBroker(Words const&)
{
    Serve(Device::FromEnvironment());
    return 0;
}

template <typename AnyCommand>
void WriteHelp(AnyCommand const& command)
{
    console::WriteLine(L"sim " + command.Usage() + L"\n  " + std::wstring(command.summary));
    if (!command.help.empty())
    {
        console::WriteLine(command.help);
    }
}

OwnCommand const& Need(Words const& words)
{
    auto const* const command = FindCommand(OwnCommands(), words);
    return command ? *command : throw UsageError(L"there is no command " + words[0] + L"; sim help lists them");
}

int Help(Words const& words)
{
    if (!words.empty())
    {
        auto const* const command = FindCommand(DeviceCommands(), words);
        command ? WriteHelp(*command) : WriteHelp(Need(words));
        if (words[0] == L"play")
        {
            console::WriteLine(Player::Help());
        }
        return 0;
    }
    console::WriteLine(L"The Windows app model for development. The device is the folder in VELMO_SIM_HOME.\n");
    auto const list = [](auto const& command) { console::WriteLine(command.ListLine(L"sim ", 39)); };
    std::ranges::for_each(DeviceCommands(), list);
    std::ranges::for_each(OwnCommands(), list);
    console::WriteLine(L"\nsim help COMMAND shows more about one.");
    return 0;
}

constexpr OwnCommand commands[] = {
    {L"settings", L"", L"the app's local settings, decoded", L"", 0, 0, Settings},
    {L"log", L"[OPTION …] [PATH …]", L"the app's log file, decoded",
     L"  As doctor show: sim log --help lists the options. With --follow it goes on and shows new lines. PATH is another\n"
     L"  log file, or a folder that contains some, such as the one that a failed test names: a path of the shell or of\n"
     L"  Windows.",
     0, anyNumber, Log},
    {L"events", L"[--follow]", L"what happened on the device", L"  With --follow it goes on and shows new ones.", 0, 1,
     Events},
    {L"doctor", L"[--json]", L"what works on the device, what does not, and what to do",
     L"  With what only the platform knows: registrations, channel, what waits and why, how far the last push or timer\n"
     L"  came. It asks the app for nothing. Exit code 3 when something failed, 4 when nothing did and something is under\n"
     L"  way. With --json an object with the paths of device and log, one for each finding, one for the log.",
     0, 1, RunDoctor},
    {L"play", L"[--colour] [--record | [--verdict] [--html FILE] [--trace FILE]] SCENARIO",
     L"plays a scenario file on a fresh device, checking every step",
     L"  What the device held before is removed. Exit code 1 when anything differs. With --verdict it ends with what the\n"
     L"  doctor finds in the app's log, with --html it writes a page with the timeline, with --trace the same as trace\n"
     L"  events. With --record it plays the steps that you give, one in a line, until the end of the input (Ctrl-D), and\n"
     L"  writes the scenario of them.",
     1, anyNumber, Play},
    {L"stop", L"", L"switches the device off, with everything that runs on it", L"", 0, 0, Stop},
    {L"restart", L"", L"switches the device off and on again",
     L"  Its processes end; its registrations and state remain.", 0, 0, Restart},
    {L"install", L"", L"registers the simulator's runtime classes in this Wine prefix",
     L"  register, update and play do it, too.", 0, 0, Install},
    {L"broker", L"", L"serves the device; other commands start it when necessary", L"", 0, 0, RunBroker},
    {L"help", L"[COMMAND]", L"this list, or the help on one command", L"", 0, 1, Help},
};

int Run(Words const& words)
{
    if (FindCommand(DeviceCommands(), words) != nullptr)
    {
        return Ask(RequestFor(words));
    }
    auto const& command = Need(words);
    return command.run(command.ArgumentsOf(words));
}

} // namespace

std::span<OwnCommand const> OwnCommands()
{
    return commands;
}

int RunCommand(Words const& words)
try
{
    return Run(words.empty() ? Words{L"help"} : words);
}
catch (UsageError const& error)
{
    console::WriteErrorLine(L"sim: " + error.Message());
    return 2;
}
catch (Error const& error)
{
    console::WriteErrorLine(L"sim: " + error.Message());
    return 1;
}

} // namespace sim
