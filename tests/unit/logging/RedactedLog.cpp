#include "tests/unit/logging/RedactedLog.h"

#include "utils/Utf8.h"

namespace test
{

bool RedactedLog::AnyFileHolds(std::wstring const& text)
{
    target.Close();
    auto const names = NamesIn(folder.Path());
    EXPECT_FALSE(names.empty());
    auto const narrow = zant::ToUtf8(text).value();
    return std::ranges::any_of(names, [&](auto const& name) {
        auto const bytes = ReadBytes(folder / name);
        return bytes.find(Utf16(text)) != bytes.npos || bytes.find(narrow) != bytes.npos;
    });
}

std::vector<std::vector<std::wstring>> RedactedLog::Lines() const
{
    std::vector<std::vector<std::wstring>> lines;
    for (auto const& line : ReadLines(LogPath()))
    {
        lines.push_back(Split(line, L" | "));
    }
    return lines;
}

} // namespace test
