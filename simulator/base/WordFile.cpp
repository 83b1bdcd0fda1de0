#include "simulator/base/WordFile.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Text.h"
#include "simulator/base/Words.h"

namespace sim
{

std::vector<std::vector<std::wstring>> ReadWordFile(std::wstring const& path)
{
    std::vector<std::vector<std::wstring>> lines;
    if (!FileExists(path))
    {
        return lines;
    }
    auto const text = ReadText(path);
    std::wstring_view rest = text;
    while (auto const line = TakeLine(rest))
    {
        try
        {
            lines.push_back(SplitWords(*line));
        }
        catch (Error const&)
        {
            // Ignored: somebody has edited the file; the other lines hold.
        }
    }
    return lines;
}

void WriteWordFile(std::wstring const& path, std::vector<std::vector<std::wstring>> const& lines)
{
    std::wstring text;
    for (auto const& words : lines)
    {
        text += Joined(words) + L"\r\n";
    }
    ReplaceBytes(path, ToUtf8(text));
}

} // namespace sim
