#pragma once
#include "explore/faults/model/Step.h"

#include <string>
#include <string_view>

namespace explore::faults
{

// The level and the site of a step's line.
inline std::wstring OriginOf(Step::Kind kind)
{
    switch (kind)
    {
    case Step::Kind::Shell:
        return L"[INFO] ZEBMain ";
    case Step::Kind::Info:
        return L"[INFO] AppService ";
    default:
        return L"[ERROR] AppService ";
    }
}

// The line of the log that a step writes, as its level, its site and its text.
inline std::wstring LineOf(Step const& step)
{
    return OriginOf(step.kind) + std::wstring(step.text);
}

} // namespace explore::faults
