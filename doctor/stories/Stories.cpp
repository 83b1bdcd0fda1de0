// What must follow each line of the app, within what time, and what it means when something else follows, or nothing.

#include "doctor/stories/Story.h"

#include <algorithm>

namespace doctor
{

namespace
{

using namespace std::chrono_literals;
using enum Line;
using enum Result;

// Between two lines that only the app's own code separates. A line can wait two seconds for the log's mutex.
constexpr auto soon = 10s;

// Windows grants a background task about 25 s, and 5 s to end.
constexpr auto taskLimit = 30s;

// The app waits a minute for a registration.
constexpr auto registrationLimit = 60s + soon;

// The platform names no limit for a channel; it takes seconds with a network.
constexpr auto channelLimit = 60s;

constexpr std::string_view readEventLog =
    "Look in the event log for a crash of VelmoNotificationClient.exe (simulator: sim events) at that time.";

constexpr Meaning serviceUnreadable = {"The app could not read the activation.",
                                       "A call of the platform failed, and its exception ended the activation.",
                                       readEventLog};

constexpr Meaning channelRefused = {
    "The platform refused the push channel.",
    "There is no network, notifications are switched off, or the package's identity is not registered for push.",
    "Check the network and the notification settings, then let the helper ask again. doctor live asks by itself."};

constexpr Meaning channelNotRequested = {
    "The push channel could not be asked for.", "The call itself failed: the push service of Windows does not run.",
    "Look whether the Windows Push Notifications services (WpnService, WpnUserService) run."};

constexpr Meaning channelNeverArrived = {
    "The push channel did not arrive within 60 s.",
    "The platform's request did not end: the push service is not reached, or the network was lost during the request.",
    "Check the network and its proxy, then let the helper ask again. doctor live measures the time."};

constexpr Meaning uriUnreadable = {"The URI of the push channel could not be read.",
                                   "The platform gave a channel whose properties fail.", "Let the helper ask again."};

constexpr Meaning uriNotWritten = {
    "The channel URI was not written to the local settings.", "The app's data folder is full, locked or damaged.",
    "Look for space on the system's drive. If it lasts, reset the app in Settings, then register again."};

constexpr Meaning uriNotThere = {
    "No channel URI is in the local settings.",
    "The app's local settings are damaged or were removed, or the URI was never written.",
    "Let the helper ask for the channel URI. If it lasts, reset the app in Settings, then register again."};

constexpr Meaning helperGone = {
    "The reply was not sent to the helper.",
    "The helper had ended or closed its connection before the app replied, or another connection had taken its place.",
    "See whether the helper waits long enough (a registration takes up to 60 s), and whether it crashed."};

constexpr Meaning notAnswered = {"A request was not answered.",
                                 "A call of the platform failed or did not end while the app worked on it.",
                                 "See the stages before this one; then let the helper ask again."};

constexpr Meaning notCompleted = {"A request could not be completed.",
                                  "The platform refused the completion, which nothing catches: the process ended.",
                                  readEventLog};

constexpr Meaning launchRefused = {
    "The desktop component was not launched.",
    "Windows refused the launch: the file is missing in the package, a policy forbids it, or it did not start in time.",
    "Look whether HOV\\Tessaline.exe is in the package's folder and starts by hand; repair or reinstall the package."};

constexpr Meaning taskOpen = {
    "A background task was never completed.",
    "The desktop component was not launched; the app completes the task only after that.",
    "See the stage of the desktop component. Windows may hold back the tasks of an app that overruns its time."};

constexpr Meaning tasksNotReplaced = {
    "A registration failed before its push task was registered.",
    "An earlier registration could not be removed, or another call of the platform failed.",
    "Restart the machine, then let the helper register again."};

constexpr Meaning pushTaskRefused = {
    "The push task was not registered.", "The app may not run in the background, or has too many tasks.",
    "Look in Settings, Privacy, Background apps, and at group policies for background apps."};

constexpr Meaning timerTaskRefused = {"The daily timer's task was not registered.", pushTaskRefused.cause,
                                      pushTaskRefused.advice};

constexpr Meaning registrationTimedOut = {
    "The tasks were not registered within 60 s.",
    "The channel did not arrive, or a step of the registration failed; see the stages before this one.",
    "Mend what failed first, then let the helper register again."};

constexpr Meaning registrationStopped = {"A registration stopped before its end.",
                                         "A call of the platform failed or did not end.", readEventLog};

constexpr Meaning processEnded = {
    "The app did not come to the end of what it had begun.",
    "An exception that nothing caught ended the process, or it was killed, or it could not write its log any more.",
    readEventLog};

constexpr Story stories[] = {
    // The process
    {.name = "start-up",
     .kind = StoryKind::Step,
     .stage = Stage::StartUp,
     .scope = Scope::Process,
     .begin = Started,
     .ends = {{{Launched}, {ProtocolActivated}, {BackgroundActivated}}},
     .limit = 30s,
     .absent = {"The process started and got no activation.",
                "The process ended during start-up: a call of the framework failed, or it was killed.", readEventLog}},
    {.name = "process",
     .kind = StoryKind::Process,
     .stage = Stage::Exit,
     .scope = Scope::Process,
     .begin = Started,
     .ends = {{{Exiting}, {ProtocolActivated}, {ExitCompleted}, {ExitNotAcknowledged}}}},
    {.name = "user launch",
     .kind = StoryKind::Activation,
     .stage = Stage::Exit,
     .scope = Scope::Thread,
     .begin = Launched,
     .ends = {{{Exiting, NotSeen}}},
     .limit = 3s + soon,
     .isCertain = true,
     .absent = processEnded},
    {.name = "background activation",
     .kind = StoryKind::Activation,
     .stage = Stage::Woken,
     .scope = Scope::Thread,
     .begin = BackgroundActivated,
     .ends = {{{ServiceActivation, NotSeen}, {TimerTask}, {PushTask}}},
     .limit = soon,
     .absent = {"A background activation was neither a push, nor the timer, nor a helper.",
                "The platform activated the app for a task that it does not know, such as one of a later version, or a "
                "call of the platform failed.",
                "Let the helper register again: it removes the app's own tasks and registers both."}},

    // The desktop component
    {.name = "launch for the user",
     .kind = StoryKind::Launch,
     .stage = Stage::ComponentLaunched,
     .scope = Scope::Process,
     .begin = LaunchForUser,
     .ends = {{{LaunchDone}}},
     .limit = taskLimit,
     .absent = launchRefused},
    {.name = "launch for the timer",
     .kind = StoryKind::Launch,
     .stage = Stage::ComponentLaunched,
     .scope = Scope::Process,
     .begin = LaunchForTimer,
     .ends = {{{LaunchDone}}},
     .limit = taskLimit,
     .absent = launchRefused},
    {.name = "launch for a push",
     .kind = StoryKind::Launch,
     .stage = Stage::ComponentLaunched,
     .scope = Scope::Process,
     .begin = LaunchForPush,
     .ends = {{{LaunchDone}}},
     .limit = taskLimit,
     .absent = launchRefused},
    {.name = "background task",
     .kind = StoryKind::Task,
     .stage = Stage::TaskCompleted,
     .scope = Scope::Process,
     .begin = TaskDeferral,
     .ends = {{{TaskCompleted}}},
     .limit = taskLimit,
     .absent = taskOpen},

    // A connection
    {.name = "opening of the service",
     .kind = StoryKind::Step,
     .stage = Stage::Service,
     .scope = Scope::Thread,
     .begin = ServiceActivation,
     .ends = {{{Connected}}},
     .limit = soon,
     .isCertain = true,
     .absent = serviceUnreadable},
    {.name = "service task",
     .kind = StoryKind::Task,
     .stage = Stage::Service,
     .scope = Scope::Process,
     .begin = Connecting,
     .ends = {{{ServiceCancelled, NotSeen}}}},
    {.name = "completion of the service's task",
     .kind = StoryKind::Step,
     .stage = Stage::Service,
     .scope = Scope::Thread,
     .begin = ServiceCancelled,
     .ends = {{{ServiceCancelledError,
                Failed,
                {"The service's task could not be completed.",
                 "The platform had already ended it, or the completion failed.", readEventLog}},
               {ServiceCancelled, NotSeen}}}}, // the next one on the thread
    {.name = "connection",
     .kind = StoryKind::Connection,
     .stage = Stage::Service,
     .scope = Scope::Process,
     .begin = Connected,
     .ends = {{{ServiceClosed, NotSeen}}}},

    // A request
    {.name = "reading of a request",
     .kind = StoryKind::Step,
     .stage = Stage::Service,
     .scope = Scope::Thread,
     .begin = RequestReceived,
     .ends = {{{ChannelRequested, NotSeen},
               {RegistrationRequested, NotSeen},
               {RemovalRequested, NotSeen},
               {ExitRequested, NotSeen}}},
     .limit = soon,
     .absent = {"A request was not understood.",
                "It holds no command, or one that this version does not know; the app leaves it open.",
                "Look whether helper and package are of the same version."}},
    {.name = "request for the channel",
     .kind = StoryKind::Request,
     .stage = Stage::Service,
     .scope = Scope::Process,
     .begin = ChannelRequested,
     .ends = {{{ChannelSent, NotSeen},
               {ChannelNotSent, Failed, helperGone},
               {ChannelRefusedSent, NotSeen},
               {ChannelRefusedNotSent, Failed, helperGone},
               {ChannelThrew, Failed, notAnswered}}},
     .limit = channelLimit + soon,
     .absent = notAnswered},
    {.name = "request to register",
     .kind = StoryKind::Request,
     .stage = Stage::Service,
     .scope = Scope::Process,
     .begin = RegistrationRequested,
     .ends = {{{RegistrationSent, NotSeen},
               {RegistrationFailureSent, NotSeen},
               {RegistrationNotSent, Failed, helperGone},
               {RegistrationFailureNotSent, Failed, helperGone}}},
     .limit = registrationLimit + soon,
     .absent = notAnswered},
    {.name = "request to remove the tasks",
     .kind = StoryKind::Request,
     .stage = Stage::Service,
     .scope = Scope::Process,
     .begin = RemovalRequested,
     .ends = {{{RemovalSent, NotSeen}, {RemovalNotSent, Failed, helperGone}}},
     .limit = soon,
     .absent = notAnswered},
    {.name = "request to exit",
     .kind = StoryKind::Request,
     .stage = Stage::Exit,
     .scope = Scope::Process,
     .begin = ExitRequested,
     .ends = {{{ExitCompleted, NotSeen}, {ExitNotAcknowledged, NotSeen}}},
     .limit = soon,
     .absent = {"The app did not exit when it was told to.",
                "The acknowledgement did not end, or a call of the platform failed.",
                "Let the helper tell it again; Windows ends an idle app by itself."}},
    {.name = "acknowledgement of an exit",
     .kind = StoryKind::Step,
     .stage = Stage::Service,
     .scope = Scope::Process,
     .begin = ExitRequested,
     .ends = {{{ExitAcknowledged, NotSeen}, {ExitNotAcknowledged, Failed, helperGone}}}},

    {.name = "completion of a registration's request",
     .kind = StoryKind::Step,
     .stage = Stage::Service,
     .scope = Scope::Thread,
     .begin = RegistrationSent,
     .ends = {{{RegistrationCompleted, NotSeen}}},
     .limit = soon,
     .isCertain = true,
     .absent = notCompleted},
    {.name = "completion of a failed registration's request",
     .kind = StoryKind::Step,
     .stage = Stage::Service,
     .scope = Scope::Thread,
     .begin = RegistrationFailureSent,
     .ends = {{{RegistrationCompleted, NotSeen}}},
     .limit = soon,
     .isCertain = true,
     .absent = notCompleted},
    {.name = "completion of a removal's request",
     .kind = StoryKind::Step,
     .stage = Stage::Service,
     .scope = Scope::Thread,
     .begin = RemovalSent,
     .ends = {{{RemovalCompleted, NotSeen}}},
     .limit = soon,
     .isCertain = true,
     .absent = notCompleted},
    {.name = "completion of an exit's request",
     .kind = StoryKind::Step,
     .stage = Stage::Service,
     .scope = Scope::Thread,
     .begin = ExitAcknowledged,
     .ends = {{{ExitCompleted, NotSeen}}},
     .limit = soon,
     .isCertain = true,
     .absent = notCompleted},

    // The channel
    {.name = "channel for the helper",
     .kind = StoryKind::Channel,
     .stage = Stage::Channel,
     .scope = Scope::Process,
     .begin = ChannelRequested,
     .ends = {{{ChannelReceived, NotSeen},
               {ChannelThrew, Failed, channelRefused},
               {ChannelRefusedSent, Failed, channelNotRequested},
               {ChannelRefusedNotSent, Failed, channelNotRequested}}},
     .limit = channelLimit,
     .absent = channelNeverArrived},
    {.name = "channel for a registration",
     .kind = StoryKind::Channel,
     .stage = Stage::Channel,
     .scope = Scope::Process,
     .begin = Registering,
     .ends = {{{ChannelReceived, NotSeen},
               {RegistrationThrew, Failed, channelRefused},
               {RegistrationRefused, Failed, channelNotRequested}}},
     .limit = channelLimit,
     .absent = channelNeverArrived},
    {.name = "reading of the URI",
     .kind = StoryKind::Step,
     .stage = Stage::Channel,
     .scope = Scope::Thread,
     .begin = ChannelReceived,
     .ends = {{{ChannelUri}, // also when the channel was late
               {ChannelThrew, Failed, uriUnreadable},
               {RegistrationThrew, Failed, uriUnreadable}}},
     .limit = soon,
     .isCertain = true,
     .absent = processEnded},
    {.name = "storing of the URI",
     .kind = StoryKind::Step,
     .stage = Stage::UriStored,
     .scope = Scope::Thread,
     .begin = ChannelUri,
     .ends = {{{UriStored},
               {UriFound},
               {UriNotWritten, Failed, uriNotWritten},
               {UriNotFound, Failed, uriNotThere},
               {ChannelThrew, Failed, uriNotThere},
               {RegistrationThrew, Failed, uriNotWritten}}},
     .limit = soon,
     .isCertain = true,
     .absent = processEnded},

    // The registration
    {.name = "wait for the registration",
     .kind = StoryKind::Registration,
     .stage = Stage::TasksRegistered,
     .scope = Scope::Thread,
     .begin = RegistrationWait,
     .ends = {{{RegistrationSignalled, NotSeen}, {RegistrationTimedOut, Failed, registrationTimedOut}}},
     .limit = registrationLimit,
     .isCertain = true,
     .absent = processEnded},
    {.name = "registration of the push task",
     .kind = StoryKind::Step,
     .stage = Stage::TasksRegistered,
     .scope = Scope::Thread,
     .begin = UriStored,
     .ends = {{{PushTaskRegistered, NotSeen},
               {PushTaskRefused, Failed, pushTaskRefused},
               {RegistrationThrew, Failed, tasksNotReplaced}}},
     .limit = soon,
     .isCertain = true,
     .absent = registrationStopped},
    {.name = "registration of the timer's task",
     .kind = StoryKind::Step,
     .stage = Stage::TasksRegistered,
     .scope = Scope::Thread,
     .begin = PushTaskRegistered,
     .ends = {{{TimerTaskRegistered}, // also when nothing waits for it any more
               {TimerTaskRefused, Failed, timerTaskRefused},
               {RegistrationThrew, Failed, timerTaskRefused}}},
     .limit = soon,
     .isCertain = true,
     .absent = registrationStopped},
    {.name = "look at the stored URI",
     .kind = StoryKind::Step,
     .stage = Stage::UriStored,
     .scope = Scope::Thread,
     .begin = RegistrationSignalled,
     .ends = {{{UriPresent, NotSeen},
               {UriMissing,
                Failed,
                {"The tasks were registered without a stored URI.",
                 "The app has no local settings, or what was written did not stay.", uriNotThere.advice}}}},
     .limit = soon,
     .isCertain = true,
     .absent = processEnded},
};

} // namespace

std::span<Story const> Stories()
{
    return stories;
}

StoryEnd const* EndOf(Story const& story, Line line)
{
    auto const* const found = std::ranges::find(story.ends, line, &StoryEnd::line);
    return line == Other || found == story.ends.end() ? nullptr : found;
}

} // namespace doctor
