// Random bytes as a log file: the lines do not depend on the blocks in which the bytes come, and are text.
#include "doctor/log/ChannelUri.h"
#include "doctor/log/LineReader.h"
#include "doctor/log/LogLine.h"
#include "doctor/log/Utf8.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <tuple>
#include <vector>

namespace
{

using Line = std::tuple<std::string, std::uint64_t, bool, bool>;

std::vector<Line> LinesOf(std::string_view bytes, std::size_t blockSize)
{
    std::vector<Line> lines;
    auto const take = [&](doctor::RawLine const& line) {
        lines.emplace_back(line.text, line.number, line.isDamaged, line.isComplete);
    };
    doctor::LineReader reader;
    for (; !bytes.empty(); bytes.remove_prefix(std::min(blockSize, bytes.size())))
    {
        reader.Add(bytes.substr(0, blockSize), take);
    }
    reader.End(take);
    return lines;
}

void Demand(bool holds)
{
    if (!holds)
    {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    std::string_view const bytes(reinterpret_cast<char const*>(data), size);
    auto const lines = LinesOf(bytes, bytes.size() + 1);
    Demand(LinesOf(bytes, 1) == lines);
    Demand(LinesOf(bytes, 7) == lines);
    for (auto const& [text, number, isDamaged, isComplete] : lines)
    {
        auto copy = text;
        Demand(!doctor::ReplaceMalformed(copy));
        auto shortened = doctor::WithShortUris(text);
        Demand(!doctor::ReplaceMalformed(shortened));
        Demand(doctor::WithShortUris(shortened).size() <= shortened.size());
        auto const glued = doctor::FindGluedLine(text);
        Demand(glued == text.npos || (glued > 0 && glued < text.size()));
        if (auto const line = doctor::ParseLogLine(text))
        {
            Demand(text.ends_with(line->message));
        }
    }
    return 0;
}
