#pragma once
#include "simulator/protocol/Activation.h"
#include "simulator/protocol/Condition.h"
#include "simulator/protocol/DeviceState.h"
#include "simulator/protocol/Fault.h"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace sim
{

// Messages that have an answer: each names its own. Results are HRESULTs, 0 or failing.

enum class ConnectionEnd : std::uint32_t
{
    Caller = 0,
    Service = 1,
    Last = Service
};

// The platform's AppServiceConnectionStatus, AppServiceResponseStatus and AppServiceClosedStatus: the values that the
// simulator uses.
enum class OpenStatus : std::uint32_t
{
    Success = 0,
    AppNotInstalled = 1,
    AppUnavailable = 2,
    AppServiceUnavailable = 3,
    Last = AppServiceUnavailable
};

enum class ResponseStatus : std::uint32_t
{
    Success = 0,
    Failure = 1,
    Last = Failure
};

enum class ClosedStatus : std::uint32_t
{
    Completed = 0,
    Canceled = 1,
    Last = Canceled
};

// --- answers ---------------------------------------------------------------------------------------------------------

// To any request: it is refused, for this reason.
struct Refused
{
    std::wstring reason;
};

// To the command line: text to print, any number of lines.
struct Shown
{
    std::wstring text;
};

struct ConnectionOpened
{
    OpenStatus status = OpenStatus::Success;
    std::uint32_t connection = 0; // with Success
};

struct ResponseGiven
{
    ResponseStatus status = ResponseStatus::Success;
    std::string set; // empty without a response
};

struct ResponseTaken
{
    ResponseStatus status = ResponseStatus::Success;
};

struct ChannelCreated
{
    std::int32_t result = 0;
    std::wstring uri = {};
    std::int64_t expiry = 0; // in units of 100 ns since 1601, UTC
};

struct TaskRegistered
{
    std::int32_t result = 0;
    std::wstring id = {}; // a GUID without braces
};

struct TaskName
{
    std::wstring id;
    std::wstring name;
};

struct TaskList
{
    std::vector<TaskName> tasks; // in the order of their registration
};

struct TaskUnregistered
{
    std::int32_t result = 0;
};

struct DesktopLaunched
{
    std::int32_t result = 0;
};

// --- from the runtime classes ----------------------------------------------------------------------------------------

struct OpenConnection
{
    using Answer = ConnectionOpened;
    std::wstring service;
    std::wstring family;
};

// An app-service request to the other end. set: an encoded value set (SetEntry.h), which only the runtime classes
// decode.
struct SendRequest
{
    using Answer = ResponseGiven;
    std::uint32_t connection = 0;
    ConnectionEnd end = ConnectionEnd::Caller; // the one that sends
    std::string set;
};

struct GiveResponse
{
    using Answer = ResponseTaken;
    std::uint32_t request = 0;
    std::string set;
};

struct CreateChannel
{
    using Answer = ChannelCreated;
};

struct RegisterTask
{
    using Answer = TaskRegistered;
    std::wstring name;
    Trigger trigger = Trigger::Push;
    std::uint32_t minutes = 0; // of a timer: its period
    bool once = false;         // of a timer
};

struct ListTasks
{
    using Answer = TaskList;
};

struct UnregisterTask
{
    using Answer = TaskUnregistered;
    std::wstring id;
    bool cancel = false; // also cancels running instances
};

struct LaunchDesktop
{
    using Answer = DesktopLaunched;
    std::wstring application;          // empty for the package's only application
    std::optional<std::wstring> group; // none: no parameters
};

// --- from the command line -------------------------------------------------------------------------------------------

struct RegisterPackage
{
    using Answer = Shown;
    std::wstring folder;
    bool isForced = false; // allows a version lower than the registered one
};

// Replaces the registered package. Its app is ended first if it runs.
struct UpdatePackage
{
    using Answer = Shown;
    std::wstring folder;
    bool isForced = false;
};

struct UnregisterPackage
{
    using Answer = Shown;
};

struct LaunchApp
{
    using Answer = Shown;
    std::wstring arguments;
};

struct OpenUri
{
    using Answer = Shown;
    std::wstring uri;
};

struct SuspendApp
{
    using Answer = Shown;
};

struct RequestPage
{
    using Answer = Shown;
    std::wstring className;
};

struct KillApp
{
    using Answer = Shown;
};

// uri: none for the app's own channel.
struct Push
{
    using Answer = Shown;
    std::wstring payload;
    std::optional<std::wstring> uri = {};
};

struct SetCondition
{
    using Answer = Shown;
    Condition condition = Condition::AccessDenied;
    bool holds = false;
};

// minutes: 0 shows the time only.
struct AdvanceClock
{
    using Answer = Shown;
    std::int64_t minutes = 0;
};

struct RevokeChannel
{
    using Answer = Shown;
};

struct CancelTasks
{
    using Answer = Shown;
    std::uint32_t reason = 0; // BackgroundTaskCancellationReason
};

struct ShowTasks
{
    using Answer = Shown;
};

struct SetFault
{
    using Answer = Shown;
    Fault fault;
};

struct ClearFaults
{
    using Answer = Shown;
};

struct ShowStatus
{
    using Answer = Shown;
};

struct DescribeDevice
{
    using Answer = DeviceState;
};

// The id of the broker's process.
struct ShowProcess
{
    using Answer = Shown;
};

using AnyRequest =
    std::variant<OpenConnection, SendRequest, GiveResponse, CreateChannel, RegisterTask, ListTasks, UnregisterTask,
                 LaunchDesktop, RegisterPackage, UpdatePackage, UnregisterPackage, LaunchApp, OpenUri, SuspendApp,
                 RequestPage, KillApp, Push, SetCondition, AdvanceClock, RevokeChannel, CancelTasks, ShowTasks,
                 SetFault, ClearFaults, ShowStatus, ShowProcess, DescribeDevice>;

using AnyAnswer = std::variant<Refused, Shown, ConnectionOpened, ResponseGiven, ResponseTaken, ChannelCreated,
                               TaskRegistered, TaskList, TaskUnregistered, DesktopLaunched, DeviceState>;

} // namespace sim
