#pragma once
#include "utils/LogLevel.h"

#include <array>
#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>

namespace zant
{

// The parts of one line. Nothing here is owned.
struct LineParts
{
    std::wstring_view dateAndTime; // local, to the second
    std::uint32_t milliseconds;    // of that second, 0 to 999
    LogLevel level;
    std::array<std::wstring_view, 6> fields; // reserved, product, component, category or scope, detail, origin
    std::uint32_t threadId;
    std::wstring_view message;
};

// A local date and time as the C runtime's locale formats them. The program keeps the "C" locale: "01/05/24 09:30:12".
std::wstring DateAndTimeText(std::tm const& local);

// Replaces the content of `line` by the composed line, without a line end. A string that is reused keeps its memory, so
// most lines allocate nothing.
void ComposeLine(std::wstring& line, std::wstring_view separator, LineParts const& parts);

} // namespace zant
