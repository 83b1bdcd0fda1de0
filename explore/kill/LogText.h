#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace explore::kill
{

// A log or a copy as a file. UTF-16 throughout, whatever this machine's wide characters are.
struct LogText
{
    std::string name;
    bool isCopy;
    std::uint64_t size; // in bytes
    bool hasMark;
    std::vector<std::u16string> lines = {}; // without their ends, and without a hole before them
    std::u16string rest = {};               // behind the last line's end
    bool hasHalf = false;                   // half a code unit at the end
};

LogText ReadLogText(std::string name, bool isCopy, std::string_view bytes);

struct LineFields
{
    std::uint32_t thread;
    std::u16string message;
};

// Nothing for a text that is no whole line of the app.
std::optional<LineFields> FieldsOf(std::u16string_view line);

// A line of the header that a rotation puts before the next line.
bool IsHeader(std::u16string_view message);

// For what is printed.
std::string Narrow(std::u16string_view text);

} // namespace explore::kill
