#pragma once
#include "simulator/protocol/Activation.h"
#include "simulator/protocol/Condition.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace sim
{

// What a device has, as plain data. Times are by the device's clock, in units of 100 ns since 1601, UTC, unless it says
// otherwise.

struct PackageState
{
    std::wstring family;
    std::wstring version;
    std::wstring folder;
};

struct ProcessState
{
    bool appRuns = false;
    bool appIsSuspended = false;
    std::uint32_t desktopComponents = 0; // that run
    std::uint32_t connections = 0;       // to the app service
};

struct ClockState
{
    std::int64_t now = 0;
    std::int64_t minutesAhead = 0; // of the system's
    std::int64_t since = 0;        // a Moment: when the device was switched on, or 0
};

struct ChannelState
{
    std::wstring uri;
    std::int64_t expiry = 0;
};

struct TaskState
{
    std::wstring name;
    Trigger trigger = Trigger::Push;
    std::int64_t due = 0; // of a timer
};

struct WaitingState
{
    std::uint32_t wake = 0;
    std::wstring task;
    std::wstring reason; // "instance 3 runs"
};

struct WakeState
{
    std::vector<TaskState> registered;
    std::vector<WaitingState> waiting;
    std::vector<Condition> conditions; // in force
};

struct DeviceState
{
    std::optional<PackageState> package; // none is registered
    ProcessState processes;
    ClockState clock;
    std::optional<ChannelState> channel; // none is open
    WakeState tasks;
};

} // namespace sim
