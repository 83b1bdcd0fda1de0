#pragma once
#include "utils/Event.h"

namespace VelmoNotificationClient
{

// The app's two background tasks; by these names the app knows them again when they run. Compared exactly.
inline constexpr wchar_t pushTaskName[] = L"PushNotificationBGTask";
inline constexpr wchar_t timerTaskName[] = L"URITimerBGTask";

// Gets the push channel and stores its URI, removes the app's tasks, registers both anew, and then signals the event:
// only when all of that went well. Returns at once; the rest happens on other threads. registered: not owned, may be
// null, valid until the process ends. Throws nothing: every failure is logged.
void RegsiterBackgroundtasks(zant::ZANT_Event_t const* registered);

// Removes all registrations of the app's two tasks, cancelling those that run; others are left alone. Throws
// hresult_error at the first one that fails.
void UnregisterOwnBackgroundTasks();

} // namespace VelmoNotificationClient
