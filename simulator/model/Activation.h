#pragma once
#include <optional>
#include <string>
#include <vector>

namespace sim
{

enum class ActivationKind
{
    Launch,         // by the user; argument: the launch arguments
    Protocol,       // argument: the URI
    Suspend,        // no activation: the system suspends the app, in order with its activations
    AppService,     // more: INSTANCE CONNECTION NAME CALLERFAMILY; CALLERFAMILY is empty for an unpackaged caller
    BackgroundTask, // more: INSTANCE TASKID NAME TRIGGER PAYLOAD; TRIGGER is push or timer, PAYLOAD a push's content
    Page,           // no activation: the framework makes a page and lets go of it; argument: its runtime class
};

// What the platform has for an app, in the order in which the app gets it.
struct Activation
{
    std::wstring id; // of the device, so that its processes can say which one they took
    ActivationKind kind = ActivationKind::Launch;
    std::wstring argument;
    std::vector<std::wstring> more = {}; // of a background activation; it has no argument

    // kind=… and what it carries, for the journal.
    std::vector<std::wstring> Details() const;

    // For a message; FromWords reads them back, nullopt when they are none.
    std::vector<std::wstring> Words() const;
    static std::optional<Activation> FromWords(std::vector<std::wstring> const& words);
};

} // namespace sim
