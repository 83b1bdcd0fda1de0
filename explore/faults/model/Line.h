#pragma once
#include "explore/faults/model/Step.h"

#include <string>

namespace explore::faults
{

// The line of the log that a step writes, as its level, its site and its text.
inline std::wstring LineOf(Step const& step)
{
    auto const* const site = step.kind == Step::Kind::Shell  ? L"[INFO] ZEBMain "
                             : step.kind == Step::Kind::Info ? L"[INFO] AppService "
                                                             : L"[ERROR] AppService ";
    return site + std::wstring(step.text);
}

} // namespace explore::faults
