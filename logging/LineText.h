#pragma once
#include "utils/LogLevel.h"

#include <array>
#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>

namespace zant
{

// What one line is made of. Nothing here is owned.
struct LineParts
{
    std::wstring_view dateAndTime; // local, to the second
    std::uint32_t milliseconds;    // of that second, 0 to 999
    LogLevel level;
    std::array<std::wstring_view, 6> fields; // reserved, product, component, category or scope, detail, origin
    std::uint32_t threadId;
    std::wstring_view message;
};

// The date and the time of a local moment as the C runtime's locale writes them; the program keeps the "C" locale,
// where it is "01/05/24 09:30:12".
std::wstring DateAndTimeText(std::tm const& local);

// Replaces the content of `line` by the text of a line, without a line end. A line's buffer that is used again keeps
// its memory, so that a line costs no allocation.
void ComposeLine(std::wstring& line, std::wstring_view separator, LineParts const& parts);

} // namespace zant
