#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace sim
{

// What the platform has for an app, beginning with what a user does.
struct UserLaunch
{
    std::wstring arguments;
};

struct ProtocolLaunch
{
    std::wstring uri;
};

// A caller has opened a connection to the app's service.
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

// A background task's trigger has fired.
struct TaskStart
{
    std::uint32_t instance = 0;
    std::wstring taskId; // of the registration: a GUID without braces
    std::wstring task;
    Trigger trigger = Trigger::Push;
    std::wstring payload;   // a push's content
    std::uint32_t wake = 0; // what the events that come of the same push or timer carry
};

// No activations, but in order with them: the system suspends the app; the framework makes a page and lets go of it.
struct Suspension
{
};

struct PageRequest
{
    std::wstring className;
};

// In the order in which the app gets it.
struct Activation
{
    using Content = std::variant<UserLaunch, ProtocolLaunch, ServiceStart, TaskStart, Suspension, PageRequest>;

    std::uint32_t id = 0; // of the device, so that its processes can say which one they took
    Content content;
};

// kind=… and what it carries, for the journal.
std::vector<std::wstring> DetailsOf(Activation const& activation);

// The instance that a background activation is for; 0 for the others.
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

// Whether it shows the app.
bool IsForeground(Activation const& activation);

} // namespace sim
