#pragma once
#include "doctor/verdict/Finding.h"

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

constexpr ExitCode ExitCodeOf(Result verdict)
{
    switch (verdict)
    {
    case Result::Worked:
        return ExitCode::Done;
    case Result::Failed:
        return ExitCode::StageFailed;
    default:
        return ExitCode::CannotBeTold;
    }
}

} // namespace doctor
