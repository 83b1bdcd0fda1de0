#pragma once

// The messages between the app and the desktop helper: value sets with these strings as keys and values, compared and
// written exactly.
namespace VelmoNotificationClient::Messages
{

// Helper to app, in a request.
inline constexpr wchar_t commandKey[] = L"Command";

inline constexpr wchar_t getChannelUri[] = L"GetChannelUri";
inline constexpr wchar_t registerBackgroundTask[] = L"RegisterBackgroundTask";
inline constexpr wchar_t unregisterBackgroundTask[] = L"UnregisterBackgroundTask";
inline constexpr wchar_t exitZeb[] = L"ExitZEB";

// App to helper, in a message; its value alone identifies the message.
inline constexpr wchar_t newMessageKey[] = L"NewMessage";

// The app has requested the channel; newCuriKey is present if there is a URI.
inline constexpr wchar_t updatedChannelUriAvailable[] = L"UpdatedChannelURIAvailable";
inline constexpr wchar_t registerBkgTaskDone[] = L"RegisterBkgTaskDone";
inline constexpr wchar_t backgroundtaskRegistrationFailed[] = L"BackgroundtaskRegistrationFailed";
inline constexpr wchar_t unregisterBackgroundTaskDone[] = L"UnregisterBackgroundTaskDone";

// Inserted after newMessageKey: the stored channel URI.
inline constexpr wchar_t newCuriKey[] = L"NewCuri";

// App to helper, in the response to the request to exit.
inline constexpr wchar_t messageAckKey[] = L"MessageAck";
inline constexpr wchar_t ack[] = L"Ack";

} // namespace VelmoNotificationClient::Messages
