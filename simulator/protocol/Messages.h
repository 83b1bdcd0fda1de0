#pragma once
#include "simulator/protocol/Activation.h"
#include "simulator/protocol/Event.h"
#include "simulator/protocol/Fault.h"
#include "simulator/protocol/Requests.h"

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace sim
{

// All messages between a process and the platform, one struct each. A new one is declared here, listed at the end, and
// handled where the compiler then reports it missing: in platform/Platform.cpp if a process sends it, in
// runtime/Host.cpp if the platform does.

// --- from the app's process ------------------------------------------------------------------------------------------

// The first message of a process that uses runtime classes: answered with the faults in force, then Welcome; or with
// NotTheApp.
struct Hello
{
    std::uint32_t processId = 0;
};

// The activation is delivered to the app now.
struct ActivationTaken
{
    std::uint32_t activation = 0;
};

// The app has requested its exit.
struct ExitAnnounced
{
};

// The handlers of Suspending have returned, and every deferral that was taken is completed.
struct SuspendingCompleted
{
};

// A fault has made this call fail.
struct FaultTriggered
{
    std::wstring call;
};

// For the journal.
struct Report
{
    std::wstring kind;
    std::vector<std::wstring> details;
};

// OnBackgroundActivated has returned.
struct TaskReturned
{
    std::uint32_t instance = 0;
};

// OnBackgroundActivated has returned and every deferral is completed.
struct TaskCompleted
{
    std::uint32_t instance = 0;
};

// --- from any process ------------------------------------------------------------------------------------------------

// The handler of an app-service request has returned and its deferral, if it took one, is completed.
struct RequestCompleted
{
    std::uint32_t request = 0;
};

// The receiving end of an app-service request has no handler.
struct RequestRefused
{
    std::uint32_t request = 0;
};

struct ConnectionClosed
{
    std::uint32_t connection = 0;
    ConnectionEnd end = ConnectionEnd::Caller; // the one that closes
};

// Answered with the Answer of the same number.
struct Request
{
    std::uint32_t number = 0;
    AnyRequest content;
};

// --- from the command line -------------------------------------------------------------------------------------------

// Answered with EventHappened for each event, past ones first.
struct Follow
{
};

// Switches the device off.
struct SwitchOff
{
};

// --- to the app's process --------------------------------------------------------------------------------------------

struct Welcome
{
    std::wstring family;
    std::wstring folder; // of the package
};

// To a process that the platform did not start as the app's.
struct NotTheApp
{
};

struct Activate
{
    Activation activation;
};

struct FaultSet
{
    Fault fault;
};

struct FaultsCleared
{
};

// BackgroundTaskInstance.Canceled.
struct TaskCancelled
{
    std::uint32_t instance = 0;
    std::uint32_t connection = 0; // of an app service's task; else 0
    std::uint32_t reason = 0;     // BackgroundTaskCancellationReason
};

// The platform has processed the completion: nothing more follows for this instance.
struct TaskEnded
{
    std::uint32_t instance = 0;
    std::uint32_t connection = 0;
};

// --- to any process --------------------------------------------------------------------------------------------------

// An app-service request arrives at this end.
struct RequestArrived
{
    std::uint32_t connection = 0;
    ConnectionEnd end = ConnectionEnd::Caller;
    std::uint32_t request = 0;
    std::string set;
};

// The other end of a connection is closed, or its process has ended.
struct OtherEndClosed
{
    std::uint32_t connection = 0;
    ConnectionEnd end = ConnectionEnd::Caller;
    ClosedStatus status = ClosedStatus::Completed;
};

struct Answer
{
    std::uint32_t number = 0;
    AnyAnswer content;
};

struct EventHappened
{
    Event event;
};

using FromProcess =
    std::variant<Hello, ActivationTaken, ExitAnnounced, FaultTriggered, Report, TaskReturned, TaskCompleted,
                 RequestCompleted, RequestRefused, ConnectionClosed, Request, Follow, SwitchOff, SuspendingCompleted>;

using ToProcess = std::variant<Welcome, NotTheApp, Activate, FaultSet, FaultsCleared, TaskCancelled, TaskEnded,
                               RequestArrived, OtherEndClosed, Answer, EventHappened>;

} // namespace sim
