#pragma once
#include "logging/LogLevel.h"

#include <string>
#include <string_view>
#include <vector>

namespace zant
{

// The last look at a message before it enters its line, where secrets are taken out of it; `printedLevel` is the level
// that the line will name. Returns the message to be written, which may be kept in `changed`. Messages pass as they
// are.
inline std::wstring_view Redact(std::wstring_view message, std::wstring& /*changed*/, LogLevel& /*printedLevel*/,
                                std::vector<std::wstring> const& /*maskedKeys*/) noexcept
{
    return message;
}

} // namespace zant
