// The table of the app's lines. A test holds it against the sources of the app.

#include "doctor/stories/Line.h"

#include <algorithm>
#include <array>
#include <span>
#include <unordered_map>

namespace doctor
{

namespace
{

struct KnownLine
{
    Line line;
    std::string_view message;
};

using enum Line;

constexpr KnownLine lines[] = {
    {HeaderEdge, "******************************************************************************"},

    {Started, "****************************** VelmoNotificationCLient Started. *********************************"},
    {Launched, "Inside OnLaunched"},
    {LaunchForUser, "Going to launch full trust app to launch HOV"},
    {LaunchDone, "Launch Done !! "},
    {Exiting, "Going to exit"},
    {ProtocolActivated, "Inside OnActivated App activated by URI protocol"},
    {BackgroundActivated, "Inside OnBackgroundActivated"},
    {ServiceActivation, "App service connection request received"},
    {TaskDeferral, "Deferal to complete background task"},
    {TimerTask, "Timer task bkg thread invocation"},
    {LaunchForTimer, "Going to launch full trust app for timer background task invocation"},
    {PushTask, "Notification bkg thread invocation"},
    {LaunchForPush, "Going to launch full trust app for new notification invocation "},
    {TaskCompleted, "Service deferral complete"},

    {Connecting, "Inside ServiceNewConnection ."},
    {Connected, "ServiceNewConnection deferral."},
    {ServiceCancelled,
     "Inside OnTaskCanceled VelmoNotificationClient UwpNotificationAppService::OnTaskCanceled deferral complete"},
    {ServiceCancelledError,
     "Inside OnTaskCanceled VelmoNotificationClient UwpNotificationAppService::OnTaskCanceled deferral complete error"},
    {ServiceClosed, "AppService Closed"},

    {RequestReceived, "Inside OnRequestReceived to process appservice request from Win32 App"},
    {RequestDeferral, "Acquired deferral to complete app service request"},
    {ChannelRequested, "RequestReceived for channel URI"},
    {RegistrationRequested, "RequestReceived to Register BackgroundTask"},
    {RemovalRequested, "RequestReceived to Unregister BackgroundTask"},
    {RemovingAll, "ZEB From Appservice Unregister all the background tasks"},
    {ExitRequested, "RequestReceived to exit Velmo Notification Client"},

    {RegistrationWait, "Going to Wait for 60 sec till background Task is registered"},
    {Registering, "Inside RegsiterBackgroundtasks"},
    {RegistrationRefused, "Inside RegsiterBackgroundtasks, Exception raised in tast_creation"},
    {RegistrationThrew, "Inside RegsiterBackgroundtasks, Exception raised in tast_creation for channelURI"},
    {UriStoredForTasks, "Appservice channel : uri is written to local setting"},
    {UriStored, "Unregister all the background tasks"},
    {TaskFound, "Background task found going to unregister it"},
    {PushTaskRegistered, "Register background task: PushNotificationTrigger task"},
    {PushTaskRefused, "Register background task: PushNotificationTrigger task failed"},
    {TimerTaskRegistered, "Register background task: TimerTaskName"},
    {TimerTaskRefused, "Register background task: TimerTaskName failed"},
    {RegistrationDone, "Inside RegsiterBackgroundtasks, task executed no exception seen"},
    {RegistrationTimedOut, "Wait for background task registration failed"},
    {RegistrationSignalled, "Event Set Sucesfully for device registration"},
    {UriPresent, "URI is present in local setting"},
    {UriMissing, "URI is not present in local setting"},
    {RegistrationFailureSent, "Msg sent to WIN32 for background task registration failed"},
    {RegistrationFailureNotSent,
     "Error in sending response for appservice requset after timeout  in bkg task registration"},
    {RegistrationSent, "Msg sent to WIN32 for background task registration done"},
    {RegistrationNotSent,
     "Error in sending response for appservice requset after sucessful bkg task registration deferral complete"},
    {RegistrationCompleted, "RegisterBkgServices deferral complete"},

    {ChannelReceived, "Channel URI Received"},
    {UriNotWritten, "Appservice unable to write channel uri to localdata"},
    {UriStoredForHelper, "From Appservice channel : uri is written to local setting"},
    {UriFound, "Channel URI found in local setting"},
    {UriNotFound, "Channel URI not found in local setting"},
    {NoUriFound, "No Channel URI found in local setting"},
    {ChannelSent, "GetChannelUriStr Deferral Complete"},
    {ChannelNotSent, "GetChannelUriStr Deferral Complete with exception, failed to send response to Helper APP"},
    {ChannelRefusedSent, "GetChannelUriStr Deferral Complete with exception in create task"},
    {ChannelRefusedNotSent,
     "GetChannelUriStr Deferral Complete with exception in task_creation, failed to send response to Helper APP"},
    {ChannelDone, "Inside GetChannelUriStr, task executed no exception seen"},
    {ChannelThrew, "Inside GetChannelUriStr, Exception raised in tast_creation for channelURI"},

    {RemovalSent, "Msg sent to WIN32 for background task unregistration done"},
    {RemovalNotSent, "Error in sending response for appservice requset after sucessful bkg task unregistration"},
    {RemovalCompleted, "UnRegisterBkgServices deferral complete"},
    {ExitAcknowledged, "Ack sent to VelmoNotificationHelper for exit"},
    {ExitNotAcknowledged, "Error in sending ack still closing"},
    {ExitCompleted, "Exit ZEB deferral complete"},

    {Withheld, "Found access/device token. Log skipped."},
};

// A value stands behind them.
constexpr KnownLine beginnings[] = {
    {ChannelUri, "Received Channel URI is "},
    {Bit, "Bit: "},
    {SuiteVersion, "HOV Version: "},
    {SystemBuild, "OS Build Version: "},
    {SystemLocale, "OS Locale: "},
    {SystemName, "OS Name: "},
    {SystemVersion, "OS Version: "},
};

using LinesByMessage = std::unordered_map<std::string_view, Line>;

LinesByMessage ByMessage()
{
    LinesByMessage result;
    for (auto const& known : lines)
    {
        result.emplace(known.message, known.line);
    }
    return result;
}

} // namespace

Line LineOf(std::string_view message)
{
    static LinesByMessage const known = ByMessage();
    if (auto const found = known.find(message); found != known.end())
    {
        return found->second;
    }
    auto const* const begun = std::ranges::find_if(
        beginnings, [&](KnownLine const& beginning) { return message.starts_with(beginning.message); });
    return begun == std::end(beginnings) ? Other : begun->line;
}

std::string_view MessageOf(Line line)
{
    for (auto const& table : {std::span<KnownLine const>(lines), std::span<KnownLine const>(beginnings)})
    {
        auto const found = std::ranges::find(table, line, &KnownLine::line);
        if (found != table.end())
        {
            return found->message;
        }
    }
    return {};
}

} // namespace doctor
