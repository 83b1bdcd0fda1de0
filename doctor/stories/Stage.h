#pragma once
#include <array>
#include <cstddef>
#include <string_view>

namespace doctor
{

// The way from the package to the suite, in the order in which its stages need each other: a stage that fails explains
// those behind it.
enum class Stage
{
    Package,           // the package is installed, and the app's process starts
    StartUp,           // the process gets its first activation
    Service,           // a helper's connection is opened, its requests are understood, and its replies are sent
    Channel,           // the platform gives a push channel
    UriStored,         // the channel's URI is in the local settings
    TasksRegistered,   // both background tasks are registered
    Woken,             // a push or the timer arrives
    ComponentLaunched, // the desktop component is started
    TaskCompleted,     // the background task is completed
    Exit               // the process ends by itself
};

inline constexpr std::size_t stageCount = 10;

// As reports have it: "tasks registered".
constexpr std::string_view StageName(Stage stage)
{
    constexpr std::array<std::string_view, stageCount> names = {
        "package",          "start-up",      "service",           "channel",        "URI stored",
        "tasks registered", "push or timer", "desktop component", "task completed", "exit"};
    return names[static_cast<std::size_t>(stage)];
}

enum class Result
{
    Worked,
    Failed,
    NotSeen,     // nothing speaks of it
    CannotBeTold // what speaks of it is not to its end
};

constexpr std::string_view ResultName(Result result)
{
    constexpr std::array<std::string_view, 4> names = {"worked", "failed", "not seen", "cannot be told"};
    return names[static_cast<std::size_t>(result)];
}

} // namespace doctor
