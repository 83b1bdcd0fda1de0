#pragma once
#include <string_view>

namespace doctor
{

// The lines that the app writes, in the order in which a request or an activation meets them.
enum class Line
{
    Other, // none of them

    // The head of a log after a rotation
    HeaderEdge,
    Bit,
    SuiteVersion,
    SystemBuild,
    SystemLocale,
    SystemName,
    SystemVersion,

    // The process and its activations
    Started,
    Launched,
    LaunchForUser,
    LaunchDone,
    Exiting,
    ProtocolActivated,
    BackgroundActivated,
    ServiceActivation,
    TaskDeferral,
    TimerTask,
    LaunchForTimer,
    PushTask,
    LaunchForPush,
    TaskCompleted,

    // A connection
    Connecting,
    Connected,
    ServiceCancelled,
    ServiceCancelledError,
    ServiceClosed,

    // A request
    RequestReceived,
    RequestDeferral,
    ChannelRequested,
    RegistrationRequested,
    RemovalRequested,
    RemovingAll,
    ExitRequested,

    // Registration
    RegistrationWait,
    Registering,
    RegistrationRefused,
    RegistrationThrew,
    UriStoredForTasks,
    UriStored,
    TaskFound,
    PushTaskRegistered,
    PushTaskRefused,
    TimerTaskRegistered,
    TimerTaskRefused,
    RegistrationDone,
    RegistrationTimedOut,
    RegistrationSignalled,
    UriPresent,
    UriMissing,
    RegistrationFailureSent,
    RegistrationFailureNotSent,
    RegistrationSent,
    RegistrationNotSent,
    RegistrationCompleted,

    // The channel
    ChannelReceived,
    ChannelUri,
    UriNotWritten,
    UriStoredForHelper,
    UriFound,
    UriNotFound,
    NoUriFound,
    ChannelSent,
    ChannelNotSent,
    ChannelRefusedSent,
    ChannelRefusedNotSent,
    ChannelDone,
    ChannelThrew,

    // Removal and exit
    RemovalSent,
    RemovalNotSent,
    RemovalCompleted,
    ExitAcknowledged,
    ExitNotAcknowledged,
    ExitCompleted,

    // From the log itself
    Withheld // in the place of a message that held a token
};

// Line::Other for any other message.
Line LineOf(std::string_view message);

// The line's message. Of one that goes on with a value, what stands before it.
std::string_view MessageOf(Line line);

} // namespace doctor
