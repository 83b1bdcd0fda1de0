#pragma once

// What crosses the connection between the app and the desktop helper: value sets whose keys and values are these texts,
// compared and written exactly as they stand.
namespace VelmoNotificationClient::Messages
{

// Helper to app, in a request.
inline constexpr wchar_t commandKey[] = L"Command";

inline constexpr wchar_t getChannelUri[] = L"GetChannelUri";
inline constexpr wchar_t registerBackgroundTask[] = L"RegisterBackgroundTask";
inline constexpr wchar_t unregisterBackgroundTask[] = L"UnregisterBackgroundTask";
inline constexpr wchar_t exitZeb[] = L"ExitZEB";

// App to helper, in a message of the app's own; the helper tells messages apart by this value alone.
inline constexpr wchar_t newMessageKey[] = L"NewMessage";

// The app has tried to get the channel; there is a URI if the next key is there.
inline constexpr wchar_t updatedChannelUriAvailable[] = L"UpdatedChannelURIAvailable";
inline constexpr wchar_t registerBkgTaskDone[] = L"RegisterBkgTaskDone";
inline constexpr wchar_t backgroundtaskRegistrationFailed[] = L"BackgroundtaskRegistrationFailed";
inline constexpr wchar_t unregisterBackgroundTaskDone[] = L"UnregisterBackgroundTaskDone";

// Beside it, after it: the stored channel URI.
inline constexpr wchar_t newCuriKey[] = L"NewCuri";

// App to helper, in the response to the request to exit.
inline constexpr wchar_t messageAckKey[] = L"MessageAck";
inline constexpr wchar_t ack[] = L"Ack";

} // namespace VelmoNotificationClient::Messages
