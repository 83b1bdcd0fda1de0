#include "doctor/log/ReadLog.h"

#include "doctor/log/InputFile.h"

#include <vector>

namespace doctor
{

bool TakeSplit(RawLine const& raw, TakeEntry const& take)
{
    auto piece = raw;
    for (auto glued = FindGluedLine(piece.text); glued != piece.text.npos; glued = FindGluedLine(piece.text))
    {
        auto first = piece;
        first.text = piece.text.substr(0, glued);
        first.isComplete = false;
        if (!take({first, ParseLogLine(first.text)}))
        {
            return false;
        }
        piece.text.remove_prefix(glued);
    }
    return take({piece, ParseLogLine(piece.text)});
}

bool ReadLog(InputFile& file, TakeEntry const& take)
{
    constexpr std::size_t blockBytes = std::size_t{256} * 1024;
    LineReader reader;
    std::vector<char> buffer(blockBytes);
    auto goesOn = true;
    auto const takeLine = [&](RawLine const& raw) { goesOn = goesOn && TakeSplit(raw, take); };
    while (goesOn)
    {
        auto const bytes = file.Read(buffer);
        if (bytes.empty())
        {
            reader.End(takeLine);
            break;
        }
        reader.Add(bytes, takeLine);
    }
    return goesOn;
}

bool ReadLog(std::filesystem::path const& path, TakeEntry const& take)
{
    InputFile file(path);
    return ReadLog(file, take);
}

} // namespace doctor
