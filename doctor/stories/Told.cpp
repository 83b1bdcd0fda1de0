#include "doctor/stories/Told.h"

namespace doctor
{

namespace
{

constexpr Meaning endedInTheMiddle = {
    "The process ended in the middle.",
    "An exception that nothing caught ended it, or it was killed; its next start shows where its end should stand.",
    "Look in the event log for a crash of VelmoNotificationClient.exe (simulator: sim events) at that time."};

constexpr Meaning exitedInTheMiddle = {
    "The app exited in the middle.",
    "The helper told it to exit, or a user or a link started it: then it ends within 3 s, whatever it does.",
    "Let the helper ask again, and start the suite by its own icon."};

constexpr Meaning endedInTheLaunch = {
    "The process ended in the middle.",
    "Windows refused the launch at once, which nothing catches, or the process was killed.",
    "Look whether HOV\\Tessaline.exe is in the package's folder and starts by hand; then look in the event log for a "
    "crash of VelmoNotificationClient.exe (simulator: sim events) at that time."};

constexpr Meaning fellSilent = {
    "The process fell silent while another one went on writing.",
    "It waited more than two seconds for the log's mutex, which another process held, and writes nothing until it ends.",
    "Look for a process that hangs or is suspended in the middle of a line; the next process to start writes again."};

} // namespace

Result ResultOf(Told const& told)
{
    switch (told.ending)
    {
    case Ending::Ended:
        return told.end->result;
    case Ending::Overdue:
    case Ending::Exited:
    case Ending::ProcessEnded:
    case Ending::FellSilent:
        return Result::Failed;
    case Ending::LogEnds:
        return Result::CannotBeTold;
    case Ending::Unlimited:
        break;
    }
    return Result::NotSeen;
}

Meaning MeaningOf(Told const& told)
{
    switch (told.ending)
    {
    case Ending::Ended:
        return told.end->meaning;
    case Ending::Overdue:
        return told.story->absent;
    case Ending::Exited:
        return exitedInTheMiddle;
    case Ending::ProcessEnded:
        return told.story->kind == StoryKind::Launch ? endedInTheLaunch : endedInTheMiddle;
    case Ending::FellSilent:
        return fellSilent;
    case Ending::LogEnds:
        return {"The log ends before this has ended.", "", "Read the log again later."};
    case Ending::Unlimited:
        break;
    }
    return {};
}

} // namespace doctor
