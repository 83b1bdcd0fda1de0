#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace sim
{

// What an app is activated for. First, by the user.
struct UserLaunch
{
    std::wstring arguments;
};

struct ProtocolLaunch
{
    std::wstring uri;
};

// A caller opens a connection to the app's service.
struct ServiceStart
{
    std::uint32_t instance = 0;
    std::uint32_t connection = 0;
    std::wstring service;
    std::wstring callerFamily; // empty for an unpackaged caller
};

enum class Trigger : std::uint32_t
{
    Push = 0,
    Timer = 1,
    Last = Timer
};

// push or timer.
std::wstring_view NameOf(Trigger trigger) noexcept;

// The trigger of a background task fires.
struct TaskStart
{
    std::uint32_t instance = 0;
    std::wstring taskId; // of the registration: a GUID without braces
    std::wstring task;
    Trigger trigger = Trigger::Push;
    std::wstring payload;   // a push's content
    std::uint32_t wake = 0; // the id that all events of the same push or timer carry
};

// Not activations, but delivered in order with them: the system suspends the app; the framework creates a page and
// releases it.
struct Suspension
{
};

struct PageRequest
{
    std::wstring className;
};

// Delivered to the app in order.
struct Activation
{
    using Content = std::variant<UserLaunch, ProtocolLaunch, ServiceStart, TaskStart, Suspension, PageRequest>;

    std::uint32_t id = 0; // unique on the device: processes report with it which one they took
    Content content;
};

// kind=… and its content, for the journal.
std::vector<std::wstring> DetailsOf(Activation const& activation);

// The instance of a background activation; 0 for any other.
std::uint32_t InstanceOf(Activation const& activation);

// The wake of a task's start; 0 for anything else.
template <typename Content>
std::uint32_t WakeOf(Content const& content)
{
    auto const* const task = std::get_if<TaskStart>(&content);
    return task ? task->wake : 0;
}

// An event's details, and wake=… unless it is 0.
std::vector<std::wstring> WithWake(std::vector<std::wstring> details, std::uint32_t wake);

// Whether the app becomes visible by it.
bool IsForeground(Activation const& activation);

} // namespace sim
