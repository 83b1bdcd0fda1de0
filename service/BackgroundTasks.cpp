#include "service/BackgroundTasks.h"

#include "service/AppServiceLog.h"
#include "service/ChannelUri.h"
#include "service/NotNull.h"

#include <winrt/Windows.ApplicationModel.Background.h>
#include <winrt/Windows.Foundation.Collections.h>

using namespace winrt::Windows::ApplicationModel::Background;
using namespace winrt::Windows::Foundation;
using namespace winrt::Windows::Networking::PushNotifications;

namespace VelmoNotificationClient
{

namespace
{

bool Register(BackgroundTaskBuilder const& task, wchar_t const* doneLine, wchar_t const* failedLine)
{
    try
    {
        task.Register();
        appServiceLog.Info(doneLine);
        return true;
    }
    catch (...)
    {
        appServiceLog.Error(failedLine);
        return false;
    }
}

// Neither task has an entry point, so the platform activates them in the app's own process.

bool RegisterPushTask()
{
    BackgroundTaskBuilder const task;
    task.Name(pushTaskName);
    task.SetTrigger(PushNotificationTrigger());
    return Register(task, L"Register background task: PushNotificationTrigger task",
                    L"Register background task: PushNotificationTrigger task failed");
}

bool RegisterTimerTask()
{
    constexpr std::uint32_t onceADay = 24 * 60; // minutes
    constexpr bool oneShot = false;
    BackgroundTaskBuilder const task;
    task.Name(timerTaskName);
    task.SetTrigger(TimeTrigger(onceADay, oneShot));
    return Register(task, L"Register background task: TimerTaskName",
                    L"Register background task: TimerTaskName failed");
}

void ReplaceRegistrations(PushNotificationChannel const& channel, zant::ZANT_Event_t const* registered)
{
    if (!StoreChannelUri(channel, L"Appservice channel : uri is written to local setting",
                         L"Unregister all the background tasks"))
    {
        appServiceLog.Info(L"Appservice unable to write channel uri to localdata");
        return;
    }
    UnregisterOwnBackgroundTasks();
    if (RegisterPushTask() && RegisterTimerTask())
    {
        zant::SetEvnt(registered);
    }
}

void RegisterWithChannel(ChannelRequest const& request, zant::ZANT_Event_t const* registered)
{
    try
    {
        ReplaceRegistrations(request.GetResults(), registered);
        appServiceLog.Info(L"Inside RegsiterBackgroundtasks, task executed no exception seen");
    }
    catch (...)
    {
        appServiceLog.Error(L"Inside RegsiterBackgroundtasks, Exception raised in tast_creation for channelURI");
    }
}

} // namespace

void RegsiterBackgroundtasks(zant::ZANT_Event_t const* registered)
{
    appServiceLog.Info(L"Inside RegsiterBackgroundtasks");
    try
    {
        RequestChannel([=](ChannelRequest const& request) { RegisterWithChannel(request, registered); });
    }
    catch (...)
    {
        appServiceLog.Error(L"Inside RegsiterBackgroundtasks, Exception raised in tast_creation");
    }
}

void UnregisterOwnBackgroundTasks()
{
    constexpr bool cancelRunning = true;
    auto const tasks = NotNull(NotNull(BackgroundTaskRegistration::AllTasks()).First());
    for (auto isTask = tasks.HasCurrent(); isTask; isTask = tasks.MoveNext())
    {
        auto const registration = NotNull(NotNull(tasks.Current()).Value());
        auto const name = registration.Name();
        if (name == pushTaskName || name == timerTaskName)
        {
            appServiceLog.Info(L"Background task found going to unregister it");
            registration.Unregister(cancelRunning);
        }
    }
}

} // namespace VelmoNotificationClient
