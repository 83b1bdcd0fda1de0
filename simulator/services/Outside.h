#pragma once
#include "simulator/model/Activation.h"
#include "simulator/transport/Peer.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace sim
{

// What the services ask of their owner. Called with the owner's mutex held; none may call back, but for `activate`,
// which may say that the activation is lost.
struct Outside
{
    std::function<void(ActivationKind, std::vector<std::wstring> more)> activate; // the app, started when it is not
    std::function<void()> endApp; // it missed a limit, or has nothing more to do
    std::function<void(std::wstring kind, std::vector<std::wstring> details)> report; // for the journal
    std::function<std::wstring()> familyName;                  // of the registered package, empty without one
    std::function<bool(std::wstring_view)> declaresAppService; // whether that package does

    // Whether the app runs, was never in the foreground and does not end already. Without it: no.
    std::function<bool()> runsInBackgroundOnly = {};

    // Whether this is the app's process; others have no package identity. Without it: yes.
    std::function<bool(Peer const&)> isApp = {};
};

// How long the platform waits, in milliseconds of the wall clock.
struct Limits
{
    unsigned task = 30'000;       // for a trigger task's deferrals, then it is cancelled
    unsigned afterCancel = 5'000; // for the deferrals of a cancelled task, then the process is ended
    unsigned idle = 5'000;        // with nothing left to do for an app that is in the background only
};

} // namespace sim
