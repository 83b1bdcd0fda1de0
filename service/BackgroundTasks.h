#pragma once
#include "utils/Event.h"

namespace VelmoNotificationClient
{

// The app's two background tasks. OnBackgroundActivated recognises them by these names, compared exactly.
inline constexpr wchar_t pushTaskName[] = L"PushNotificationBGTask";
inline constexpr wchar_t timerTaskName[] = L"URITimerBGTask";

// Requests the push channel, stores its URI, removes the app's tasks and registers both again, then signals the event:
// only if all of that succeeds. Returns at once; the rest runs on other threads. registered: not owned, may be null,
// valid until the process ends. Throws nothing: every failure is logged.
void RegsiterBackgroundtasks(zant::ZANT_Event_t const* registered);

// Removes all registrations of the app's two tasks and cancels their running instances; leaves other registrations
// alone. Throws hresult_error at the first failure.
void UnregisterOwnBackgroundTasks();

} // namespace VelmoNotificationClient
