#pragma once
#include "doctor/verdict/Finding.h"

#include <utility>

namespace doctor
{

// Findings of the machine.

inline Finding MakeFinding(Stage stage, Result result, std::string what, std::string cause, std::string advice)
{
    Finding finding;
    finding.stage = stage;
    finding.result = result;
    finding.what = std::move(what);
    finding.cause = std::move(cause);
    finding.advice = std::move(advice);
    return finding;
}

inline Finding Worked(Stage stage, std::string what)
{
    return MakeFinding(stage, Result::Worked, std::move(what), "", "");
}

inline Finding Failed(Stage stage, std::string what, std::string cause, std::string advice)
{
    return MakeFinding(stage, Result::Failed, std::move(what), std::move(cause), std::move(advice));
}

inline Finding CannotBeTold(Stage stage, std::string what, std::string advice)
{
    return MakeFinding(stage, Result::CannotBeTold, std::move(what), "", std::move(advice));
}

} // namespace doctor
