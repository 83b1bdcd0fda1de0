#pragma once
#include <cstddef>
#include <cstdint>
#include <optional>
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

// What a helper has of a request.
struct Answer
{
    bool isGiven = true; // the request has an end
    std::wstring response = {};

    bool operator==(Answer const&) const = default;
};

// What a play leads to, as far as others can see it.
struct Outcome
{
    Texts lines = {};                       // of the log, with their levels
    Texts calls = {};                       // of the platform
    Texts messages = {};                    // to the helpers: "KEY=VALUE KEY=VALUE"
    std::vector<Answer> answers = {};       // to the requests, in the order in which they were made
    std::vector<unsigned> completions = {}; // of the requests' deferrals, in the order in which they were taken
    unsigned tasksEnded = 0;                // instances that their deferrals have ended
    Texts launches = {};                    // the groups
    Texts tasks = {};                       // registered
    std::wstring uri = {};                  // stored
    Texts waits = {};                       // in milliseconds
    End end = End::Alive;
    std::int32_t code = 0;                       // of a failure
    std::optional<std::size_t> linesAtExit = {}; // so many stood there when the app asked for its end

    bool operator==(Outcome const&) const = default;
};

} // namespace explore::faults
