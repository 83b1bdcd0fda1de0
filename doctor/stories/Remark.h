#pragma once
#include "doctor/stories/LogPlace.h"
#include "doctor/stories/Story.h"

#include <functional>
#include <optional>

namespace doctor
{

// What no single story tells.
struct Remark
{
    Meaning meaning;
    std::optional<Stage> failed{}; // the stage that failed; nothing: worth knowing
    bool lasts = false;            // to the log's end, whatever else works
};

// They live as long as the program.
extern Remark const pushTaskTwice;
extern Remark const timerTaskTwice;
extern Remark const pushTaskWasTwice;
extern Remark const timerTaskWasTwice;
extern Remark const noTimer;
extern Remark const noLine;
extern Remark const noPush;
extern Remark const closedInRequest;
extern Remark const secondConnection;
extern Remark const clockSetBack;
extern Remark const withheld;
extern Remark const setAside;
extern Remark const rotated;
extern Remark const copyMissing;
extern Remark const beginningMissing;

// The lines that say so, the first of which may be the same as the second.
using TakeRemark = std::function<void(Remark const&, LogPlace const& first, LogPlace const& last)>;

} // namespace doctor
