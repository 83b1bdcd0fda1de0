#pragma once
#include <string>
#include <string_view>
#include <vector>

namespace explore::faults
{

// One thing that the rules say. Lists of them are the rules; Reckoning tells what follows from them.
struct Step
{
    enum class Kind
    {
        Shell,     // a line of start-up and activation
        Info,      // a line of the service
        Error,     // the same
        Call,      // a call of the platform; null counts as its failure
        Dropped,   // a call whose result nobody looks at
        Optional,  // a call that may give null: then `otherwise`, else `body`
        Guard,     // `body`; at its first failure `otherwise`
        Operation, // a call that starts an operation, at whose end `body` runs
        Fail,
        Result,       // fails when the operation has failed at whose end it stands
        Connected,    // fails while no helper is connected
        IfConnected,  // `body` while one is
        TakeDeferral, // of a task
        TaskReturned, // without a deferral it ends
        IfDeferral,   // `body` while there is one that is not completed
        EachTask,     // `body` for each registered task, by the platform's iterator
        IfOwnTask,    // `body` for one of the app's two tasks
        IfTask,       // `body` when the activation is for the task `text`, else `otherwise`
        IfService,    // `body` for an activation by a helper, else `otherwise`
        Scope,        // `body`, of which End leaves out the rest
        End,
        Signal, // the wait may end
        Wait,   // until the signal: `body`; or the time limit: `otherwise`
        Sleep,  // the whole time
    };

    // Which ends of an operation its body runs at.
    enum class Ends
    {
        All,
        Successful,
        NotCancelled,
    };

    Kind kind;
    std::wstring_view text = {};   // the line, or the call
    std::wstring_view detail = {}; // what the call is about: Reckoning knows by the call
    std::vector<Step> body = {};
    std::vector<Step> otherwise = {};
    Ends ends = Ends::All;
};

using Steps = std::vector<Step>;

} // namespace explore::faults
