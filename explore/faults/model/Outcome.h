#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace explore::faults
{

using Texts = std::vector<std::wstring>;

// How the app's process stands at the end of a play.
enum class End
{
    Alive,
    Exited,     // it has asked for its end
    Failed,     // an override has failed
    NotStarted, // Application.Start has failed
    Terminated, // a failure that nothing may catch
    Killed,
};

// What a play leads to, as far as others can see it.
struct Outcome
{
    Texts lines;              // of the log, with their levels
    Texts messages;           // to the helpers: "KEY=VALUE KEY=VALUE"
    bool isAnswered = true;   // the request
    std::wstring response;    // to it
    unsigned completions = 0; // of the request's deferral
    unsigned tasksEnded = 0;  // instances that their deferrals have ended
    Texts launches;           // the groups
    Texts tasks;              // registered
    std::wstring uri;         // stored
    Texts waits;              // in milliseconds
    End end = End::Alive;
    std::int32_t code = 0; // of a failure

    bool operator==(Outcome const&) const = default;
};

} // namespace explore::faults
