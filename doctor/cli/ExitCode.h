#pragma once

namespace doctor
{

enum class ExitCode
{
    Done = 0, // nothing failed
    Failed = 1,
    UsageError = 2,
    StageFailed = 3,
    CannotBeTold = 4 // no stage failed, and one is not to its end, or nothing was seen
};

} // namespace doctor
