#pragma once
#include <string_view>

namespace sim
{

// What a call of the platform returns, which determines how it can fail.
enum class Gives
{
    NoObject,        // it can only fail
    Object,          // which could be null
    Operation,       // which completes later, or could be null
    StatusOperation, // the same; its result has a status
};

// A call of the platform that can be made to fail.
struct KnownCall
{
    std::wstring_view name;
    Gives gives;
};

// The bare class name stands for its activation factory.
inline constexpr KnownCall knownCalls[] = {
    {L"AppServiceConnection", Gives::NoObject},
    {L"AppServiceConnection.ActivateInstance", Gives::NoObject},
    {L"AppServiceConnection.Close", Gives::NoObject},
    {L"AppServiceConnection.OpenAsync", Gives::StatusOperation},
    {L"AppServiceConnection.RequestReceived", Gives::NoObject},
    {L"AppServiceConnection.SendMessageAsync", Gives::StatusOperation},
    {L"AppServiceConnection.ServiceClosed", Gives::NoObject},
    {L"AppServiceDeferral.Complete", Gives::NoObject},
    {L"AppServiceRequest.Message", Gives::Object},
    {L"AppServiceRequest.SendResponseAsync", Gives::StatusOperation},
    {L"AppServiceRequestReceivedEventArgs.GetDeferral", Gives::Object},
    {L"AppServiceRequestReceivedEventArgs.Request", Gives::Object},
    {L"AppServiceTriggerDetails.AppServiceConnection", Gives::Object},
    {L"Application", Gives::NoObject},
    {L"Application.CreateInstance", Gives::NoObject},
    {L"Application.LoadComponent", Gives::NoObject},
    {L"Application.Start", Gives::NoObject},
    {L"Application.Suspending", Gives::NoObject},
    {L"ApplicationData", Gives::NoObject},
    {L"ApplicationData.Current", Gives::Object},
    {L"ApplicationData.LocalSettings", Gives::Object},
    {L"ApplicationDataContainer.Values", Gives::Object},
    {L"ApplicationDataContainerSettings.Insert", Gives::NoObject},
    {L"ApplicationDataContainerSettings.Lookup", Gives::Object},
    {L"BackgroundActivatedEventArgs", Gives::Object},
    {L"BackgroundActivatedEventArgs.TaskInstance", Gives::Object},
    {L"BackgroundTaskBuilder", Gives::NoObject},
    {L"BackgroundTaskBuilder.ActivateInstance", Gives::NoObject},
    {L"BackgroundTaskBuilder.Name", Gives::NoObject},
    {L"BackgroundTaskBuilder.Register", Gives::Object},
    {L"BackgroundTaskBuilder.SetTrigger", Gives::NoObject},
    {L"BackgroundTaskDeferral.Complete", Gives::NoObject},
    {L"BackgroundTaskInstance.Canceled", Gives::NoObject},
    {L"BackgroundTaskInstance.GetDeferral", Gives::Object},
    {L"BackgroundTaskInstance.Task", Gives::Object},
    {L"BackgroundTaskInstance.TriggerDetails", Gives::Object},
    {L"BackgroundTaskRegistration", Gives::NoObject},
    {L"BackgroundTaskRegistration.AllTasks", Gives::Object},
    {L"BackgroundTaskRegistration.AllTasks.Current", Gives::Object},
    {L"BackgroundTaskRegistration.AllTasks.First", Gives::Object},
    {L"BackgroundTaskRegistration.AllTasks.HasCurrent", Gives::NoObject},
    {L"BackgroundTaskRegistration.AllTasks.MoveNext", Gives::NoObject},
    {L"BackgroundTaskRegistration.AllTasks.Value", Gives::Object},
    {L"BackgroundTaskRegistration.Name", Gives::NoObject},
    {L"BackgroundTaskRegistration.Unregister", Gives::NoObject},
    {L"CoreApplication", Gives::NoObject},
    {L"CoreApplication.Exit", Gives::NoObject},
    {L"FullTrustProcessLauncher", Gives::NoObject},
    {L"FullTrustProcessLauncher.LaunchFullTrustProcessForAppAsync", Gives::Operation},
    {L"FullTrustProcessLauncher.LaunchFullTrustProcessForCurrentAppAsync", Gives::Operation},
    {L"LaunchActivatedEventArgs", Gives::Object},
    {L"LaunchActivatedEventArgs.Kind", Gives::NoObject},
    {L"Page", Gives::NoObject},
    {L"Page.CreateInstance", Gives::NoObject},
    {L"PropertyValue", Gives::NoObject},
    {L"PropertyValue.CreateString", Gives::Object},
    {L"ProtocolActivatedEventArgs", Gives::Object},
    {L"ProtocolActivatedEventArgs.Kind", Gives::NoObject},
    {L"PushNotificationChannel.Uri", Gives::NoObject},
    {L"PushNotificationChannelManager", Gives::NoObject},
    {L"PushNotificationChannelManager.CreatePushNotificationChannelForApplicationAsync", Gives::Operation},
    {L"PushNotificationTrigger", Gives::NoObject},
    {L"PushNotificationTrigger.ActivateInstance", Gives::NoObject},
    {L"TimeTrigger", Gives::NoObject},
    {L"TimeTrigger.Create", Gives::Object},
    {L"Uri", Gives::NoObject},
    {L"Uri.CreateUri", Gives::Object},
    {L"ValueSet", Gives::NoObject},
    {L"ValueSet.ActivateInstance", Gives::NoObject},
    {L"ValueSet.Insert", Gives::NoObject},
    {L"ValueSet.Lookup", Gives::Object},
    {L"Window", Gives::NoObject},
    {L"Window.Content", Gives::NoObject},
    {L"Window.Current", Gives::Object},
};

} // namespace sim
