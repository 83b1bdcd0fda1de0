#pragma once
#include "logging/LogLevel.h"

#include <string>
#include <vector>

namespace zant
{

// The last look at a message before it enters its line, where secrets are taken out of it; `printedLevel` is the level
// that the line will name. Messages pass as they are.
inline void Redact(std::wstring& message, LogLevel& printedLevel, std::vector<std::wstring> const& maskedKeys) noexcept
{
}

} // namespace zant
