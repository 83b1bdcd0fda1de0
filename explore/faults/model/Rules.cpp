#include "explore/faults/model/Rules.h"

#include <utility>

namespace explore::faults
{

namespace
{

using Kind = Step::Kind;

Step Info(std::wstring_view line)
{
    return {.kind = Kind::Info, .text = line};
}

Step Shell(std::wstring_view line)
{
    return {.kind = Kind::Shell, .text = line};
}

Step Error(std::wstring_view line)
{
    return {.kind = Kind::Error, .text = line};
}

Step Call(std::wstring_view call, std::wstring_view detail = {})
{
    return {.kind = Kind::Call, .text = call, .detail = detail};
}

Step Dropped(std::wstring_view call, std::wstring_view detail = {})
{
    return {.kind = Kind::Dropped, .text = call, .detail = detail};
}

Step Optional(std::wstring_view call, Steps body, Steps otherwise = {})
{
    return {.kind = Kind::Optional, .text = call, .body = std::move(body), .otherwise = std::move(otherwise)};
}

Step Guard(Steps body, Steps otherwise)
{
    return {.kind = Kind::Guard, .body = std::move(body), .otherwise = std::move(otherwise)};
}

Step Operation(std::wstring_view call, std::wstring_view detail, Step::Ends ends, Steps body)
{
    return {.kind = Kind::Operation, .text = call, .detail = detail, .body = std::move(body), .ends = ends};
}

Steps operator+(Steps steps, Steps const& more)
{
    steps.insert(steps.end(), more.begin(), more.end());
    return steps;
}

// --- pieces ----------------------------------------------------------------------------------------------------------

Step Complete()
{
    return Call(L"AppServiceDeferral.Complete");
}

// Puts a value under a key of a message.
Steps Put(std::wstring_view keyAndValue)
{
    return {Dropped(L"PropertyValue.CreateString"), Call(L"ValueSet.Insert", keyAndValue)};
}

// The lines around the completion of a request.
struct Around
{
    std::wstring_view before;
    std::wstring_view after;
};

Steps CompleteWith(Around lines, Step (*line)(std::wstring_view))
{
    Steps steps;
    if (!lines.before.empty())
    {
        steps.push_back(line(lines.before));
    }
    steps.push_back(Complete());
    if (!lines.after.empty())
    {
        steps.push_back(line(lines.after));
    }
    return steps;
}

// Sends the message of the request on the connection of the helper that connected last.
Step Send(Around sent, Around notSent)
{
    return Guard({{.kind = Kind::Connected},
                  Operation(L"AppServiceConnection.SendMessageAsync", {}, Step::Ends::All, CompleteWith(sent, Info))},
                 CompleteWith(notSent, Error));
}

// The app's local settings, which may be missing.
Steps Settings(Steps const& body, Steps otherwise = {})
{
    return {Call(L"ApplicationData.Current"),
            Optional(L"ApplicationData.LocalSettings", Steps{Call(L"ApplicationDataContainer.Values")} + body,
                     std::move(otherwise))};
}

// The stored URI: `found` or `missing`.
Steps StoredUri(Steps const& found, Steps const& missing)
{
    return Settings({Optional(L"ApplicationDataContainerSettings.Lookup", found, missing)}, missing);
}

// Stores the channel's URI. `stored` is under its guard, too.
Steps StoreChannelUri(std::wstring_view writeLine, Steps const& failed, Steps const& stored = {})
{
    auto write = Settings({Dropped(L"ApplicationDataContainerSettings.Lookup"), Info(writeLine),
                           Dropped(L"PropertyValue.CreateString"), Call(L"ApplicationDataContainerSettings.Insert")});
    return {Info(L"Channel URI Received"), Call(L"PushNotificationChannel.Uri"),
            Info(L"Received Channel URI is {logged-uri}"), Guard(write + stored, failed)};
}

// Of the app's own two.
Steps UnregisterTasks()
{
    return {Call(L"BackgroundTaskRegistration.AllTasks"),
            Call(L"BackgroundTaskRegistration.AllTasks.First"),
            {.kind = Kind::EachTask,
             .body = {Call(L"BackgroundTaskRegistration.AllTasks.Current"),
                      Call(L"BackgroundTaskRegistration.AllTasks.Value"),
                      Call(L"BackgroundTaskRegistration.Name"),
                      {.kind = Kind::IfOwnTask,
                       .body = {Info(L"Background task found going to unregister it"),
                                Call(L"BackgroundTaskRegistration.Unregister")}}}}};
}

Step RequestChannel(Steps body)
{
    return Operation(L"PushNotificationChannelManager.CreatePushNotificationChannelForApplicationAsync", {},
                     Step::Ends::NotCancelled, std::move(body));
}

// --- the commands ----------------------------------------------------------------------------------------------------

constexpr std::wstring_view update = L"NewMessage=UpdatedChannelURIAvailable";

Step SendUpdate()
{
    return Send({{}, L"GetChannelUriStr Deferral Complete"},
                {{}, L"GetChannelUriStr Deferral Complete with exception, failed to send response to Helper APP"});
}

Steps SendStoredUri()
{
    return StoredUri(Steps{Info(L"Channel URI found in local setting")} + Put(update) +
                         Steps{Call(L"ValueSet.Insert", L"NewCuri={stored}"), SendUpdate()},
                     Steps{Info(L"Channel URI not found in local setting")} + Put(update) +
                         Steps{SendUpdate(), Error(L"No Channel URI found in local setting")});
}

Steps GetChannelUri()
{
    auto const notStored =
        Steps{Error(L"Appservice unable to write channel uri to localdata")} + Put(update) + Steps{SendUpdate()};
    auto const chain = Guard(
        Steps{{.kind = Kind::Result}} +
            StoreChannelUri(L"From Appservice channel : uri is written to local setting", notStored) + SendStoredUri() +
            Steps{Complete(), Info(L"Inside GetChannelUriStr, task executed no exception seen")},
        {Complete(), Error(L"Inside GetChannelUriStr, Exception raised in tast_creation for channelURI")});
    auto const notRequested =
        Put(update) +
        Steps{Send({{}, L"GetChannelUriStr Deferral Complete with exception in create task"},
                   {{},
                    L"GetChannelUriStr Deferral Complete with exception in task_creation, failed to send response to "
                    L"Helper APP"})};
    return {Info(L"RequestReceived for channel URI"), Guard({RequestChannel({chain})}, notRequested)};
}

// Of one of the two. What comes after it in the scope is left out when it cannot be registered.
Steps RegisterTask(std::wstring_view task, Step const& trigger, std::wstring_view done, std::wstring_view failed)
{
    return {
        Call(L"BackgroundTaskBuilder.ActivateInstance"), Call(L"BackgroundTaskBuilder.Name"), trigger,
        Call(L"BackgroundTaskBuilder.SetTrigger"),
        Guard({Dropped(L"BackgroundTaskBuilder.Register", task), Info(done)}, {Error(failed), {.kind = Kind::End}})};
}

Steps RegisterBothTasks()
{
    return RegisterTask(L"PushNotificationBGTask", Call(L"PushNotificationTrigger.ActivateInstance"),
                        L"Register background task: PushNotificationTrigger task",
                        L"Register background task: PushNotificationTrigger task failed") +
           RegisterTask(L"URITimerBGTask", Dropped(L"TimeTrigger.Create"), L"Register background task: TimerTaskName",
                        L"Register background task: TimerTaskName failed") +
           Steps{{.kind = Kind::Signal}};
}

Step StartRegistration()
{
    auto const store =
        StoreChannelUri(L"Appservice channel : uri is written to local setting",
                        {Info(L"Appservice unable to write channel uri to localdata"), {.kind = Kind::End}},
                        {Info(L"Unregister all the background tasks")});
    Step const replace{.kind = Kind::Scope,
                       .body = Steps{{.kind = Kind::Result}} + store + UnregisterTasks() + RegisterBothTasks()};
    Step const chain =
        Guard({replace, Info(L"Inside RegsiterBackgroundtasks, task executed no exception seen")},
              {Error(L"Inside RegsiterBackgroundtasks, Exception raised in tast_creation for channelURI")});
    return Guard({RequestChannel({chain})},
                 {Error(L"Inside RegsiterBackgroundtasks, Exception raised in tast_creation")});
}

Steps RegisterBackgroundTask()
{
    constexpr std::wstring_view completed = L"RegisterBkgServices deferral complete";
    constexpr std::wstring_view failed = L"NewMessage=BackgroundtaskRegistrationFailed";
    auto const sendDone =
        Send({L"Msg sent to WIN32 for background task registration done", completed},
             {L"Error in sending response for appservice requset after sucessful bkg task registration deferral "
              L"complete",
              {}});
    auto const sendFailed =
        Send({L"Msg sent to WIN32 for background task registration failed", completed},
             {L"Error in sending response for appservice requset after timeout  in bkg task registration", {}});
    auto const present = Steps{Info(L"URI is present in local setting")} + Put(L"NewMessage=RegisterBkgTaskDone") +
                         Steps{Call(L"ValueSet.Insert", L"NewCuri={stored}")};
    auto const missing = Steps{Error(L"URI is not present in local setting")} + Put(failed);
    return {
        Info(L"RequestReceived to Register BackgroundTask"),
        Info(L"Going to Wait for 60 sec till background Task is registered"),
        Info(L"Inside RegsiterBackgroundtasks"),
        StartRegistration(),
        {.kind = Kind::Wait,
         .body = Steps{Info(L"Event Set Sucesfully for device registration")} + StoredUri(present, missing) +
                 Steps{sendDone},
         .otherwise = Steps{Error(L"Wait for background task registration failed")} + Put(failed) + Steps{sendFailed}}};
}

Steps UnregisterBackgroundTask()
{
    return Steps{Info(L"RequestReceived to Unregister BackgroundTask"),
                 Info(L"ZEB From Appservice Unregister all the background tasks")} +
           UnregisterTasks() + Put(L"NewMessage=UnregisterBackgroundTaskDone") +
           Steps{
               Send({L"Msg sent to WIN32 for background task unregistration done",
                     L"UnRegisterBkgServices deferral complete"},
                    {L"Error in sending response for appservice requset after sucessful bkg task unregistration", {}})};
}

Step Exit()
{
    return Call(L"CoreApplication.Exit");
}

Steps ExitZeb()
{
    return Steps{Info(L"RequestReceived to exit Velmo Notification Client")} + UnregisterTasks() +
           Steps{Call(L"ValueSet.ActivateInstance", L"acknowledgement")} + Put(L"MessageAck=Ack") +
           Steps{Guard({Operation(L"AppServiceRequest.SendResponseAsync", {}, Step::Ends::All,
                                  {Info(L"Ack sent to VelmoNotificationHelper for exit"), Complete(),
                                   Info(L"Exit ZEB deferral complete"), Exit()})},
                       {Error(L"Error in sending ack still closing"), Complete(), Exit()})};
}

Steps Command(std::wstring_view command)
{
    constexpr std::pair<std::wstring_view, Steps (*)()> commands[] = {
        {L"GetChannelUri", GetChannelUri},
        {L"RegisterBackgroundTask", RegisterBackgroundTask},
        {L"UnregisterBackgroundTask", UnregisterBackgroundTask},
        {L"ExitZEB", ExitZeb},
    };
    for (auto const& [name, steps] : commands)
    {
        if (name == command)
        {
            return steps();
        }
    }
    return {};
}

// --- activations -----------------------------------------------------------------------------------------------------

Step Launch(std::wstring_view group, Steps launched)
{
    return Operation(L"FullTrustProcessLauncher.LaunchFullTrustProcessForCurrentAppAsync", group,
                     Step::Ends::Successful, std::move(launched));
}

Step TriggerTask(std::wstring_view task, std::wstring_view line, std::wstring_view goingTo, std::wstring_view group,
                 Steps otherwise)
{
    return {.kind = Kind::IfTask,
            .text = task,
            .body = {Shell(line), Shell(goingTo),
                     Launch(group, {Shell(L"Launch Done !! "),
                                    {.kind = Kind::IfDeferral,
                                     .body = {Call(L"BackgroundTaskDeferral.Complete"),
                                              Shell(L"Service deferral complete")}}})},
            .otherwise = std::move(otherwise)};
}

Steps TaskName()
{
    return {Call(L"BackgroundTaskInstance.Task"), Call(L"BackgroundTaskRegistration.Name")};
}

Steps ServeConnection()
{
    return {Shell(L"App service connection request received"),
            Info(L"Inside ServiceNewConnection ."),
            Call(L"BackgroundActivatedEventArgs.TaskInstance"),
            Optional(L"BackgroundTaskInstance.GetDeferral", {{.kind = Kind::TakeDeferral}}),
            Info(L"ServiceNewConnection deferral."),
            Optional(L"BackgroundTaskInstance.TriggerDetails",
                     {Call(L"BackgroundTaskInstance.Canceled"), Call(L"AppServiceTriggerDetails.AppServiceConnection"),
                      Call(L"AppServiceConnection.ServiceClosed"), Call(L"AppServiceConnection.RequestReceived")},
                     {Call(L"BackgroundTaskInstance.Canceled"), {.kind = Kind::Fail}})};
}

// The name is read once more for the second task.
Steps RunTriggerTask()
{
    auto const push =
        TriggerTask(L"PushNotificationBGTask", L"Notification bkg thread invocation",
                    L"Going to launch full trust app for new notification invocation ", L"NotificationReceived", {});
    auto const timer = TriggerTask(L"URITimerBGTask", L"Timer task bkg thread invocation",
                                   L"Going to launch full trust app for timer background task invocation",
                                   L"CURIUpdated", TaskName() + Steps{push});
    return Steps{Optional(L"BackgroundTaskInstance.GetDeferral", {{.kind = Kind::TakeDeferral}}),
                 Shell(L"Deferal to complete background task")} +
           TaskName() + Steps{timer};
}

} // namespace

Steps StartUp()
{
    return {Call(L"Application.Start"), Call(L"Application.CreateInstance"),
            Shell(L"****************************** VelmoNotificationCLient Started. "
                  L"*********************************"),
            Call(L"Application.Suspending")};
}

Steps UserLaunch()
{
    return {Dropped(L"LaunchActivatedEventArgs"),
            Shell(L"Inside OnLaunched"),
            Optional(L"Window.Current", {Dropped(L"Window.Content")}),
            Shell(L"Going to launch full trust app to launch HOV"),
            Launch(L"LaunchHOV", {Shell(L"Launch Done !! ")}),
            {.kind = Kind::Sleep},
            Shell(L"Going to exit"),
            Exit()};
}

Steps ProtocolLaunch()
{
    Steps const said = {Shell(L"Inside OnActivated App activated by URI protocol")};
    return {Optional(L"ProtocolActivatedEventArgs", said + Steps{Call(L"ProtocolActivatedEventArgs.Kind")}, said),
            Exit()};
}

Steps BackgroundActivation()
{
    auto const inside = Shell(L"Inside OnBackgroundActivated");
    return {Optional(L"BackgroundActivatedEventArgs",
                     {inside,
                      Call(L"BackgroundActivatedEventArgs.TaskInstance"),
                      Dropped(L"BackgroundTaskInstance.TriggerDetails"),
                      {.kind = Kind::IfService, .body = ServeConnection(), .otherwise = RunTriggerTask()},
                      {.kind = Kind::TaskReturned}},
                     {inside, {.kind = Kind::Fail}})};
}

Steps RequestReceived(std::wstring_view command)
{
    return Steps{Info(L"Inside OnRequestReceived to process appservice request from Win32 App"),
                 Info(L"Acquired deferral to complete app service request"),
                 Call(L"AppServiceRequestReceivedEventArgs.GetDeferral"),
                 Call(L"ValueSet.ActivateInstance"),
                 Call(L"AppServiceRequestReceivedEventArgs.Request"),
                 Call(L"AppServiceRequest.Message"),
                 Call(L"ValueSet.Lookup")} +
           Command(command);
}

Steps ConnectionClosed()
{
    return {Info(L"AppService Closed"),
            {.kind = Kind::IfDeferral, .body = {Call(L"BackgroundTaskDeferral.Complete")}},
            {.kind = Kind::IfConnected, .body = {Call(L"AppServiceConnection.Close")}}};
}

Steps TaskCancelled()
{
    constexpr std::wstring_view line =
        L"Inside OnTaskCanceled VelmoNotificationClient UwpNotificationAppService::OnTaskCanceled deferral complete";
    constexpr std::wstring_view error =
        L"Inside OnTaskCanceled VelmoNotificationClient UwpNotificationAppService::OnTaskCanceled deferral complete "
        L"error";
    return {Info(line),
            Guard({{.kind = Kind::IfDeferral, .body = {Call(L"BackgroundTaskDeferral.Complete")}}}, {Error(error)}),
            {.kind = Kind::IfConnected, .body = {Call(L"AppServiceConnection.Close")}}};
}

} // namespace explore::faults
