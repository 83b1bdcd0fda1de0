#pragma once
#include "doctor/stories/LogPlace.h"
#include "doctor/stories/Story.h"

#include <functional>
#include <optional>

namespace doctor
{

enum class Ending
{
    Ended,        // with one of its ends
    Overdue,      // its process went on without it
    Exited,       // its process exited by itself before it
    ProcessEnded, // its process ended before it
    FellSilent,   // its process wrote nothing more while another one did
    LogEnds,      // before its time is over
    Unlimited     // nobody waits for its end, which did not come
};

// A story that came to its end, one way or another.
struct Told
{
    Story const* story = nullptr;
    Ending ending{};
    StoryEnd const* end = nullptr; // Ended only
    LogPlace begin{};

    // Ended: the line that ended it. ProcessEnded and FellSilent: the banner of the next process, if there is one.
    // Exited: the line before that. Unlimited: the last line of its process.
    std::optional<LogPlace> last{};
};

using TakeTold = std::function<void(Told const&)>;

// Worked, Failed, NotSeen where it says nothing about its stage, or CannotBeTold.
Result ResultOf(Told const& told);

// Of a failure.
Meaning MeaningOf(Told const& told);

} // namespace doctor
