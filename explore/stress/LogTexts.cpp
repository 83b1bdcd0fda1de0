#include "explore/stress/LogTexts.h"

#include "doctor/log/LineReader.h"
#include "logging/LogPath.h"
#include "simulator/base/Files.h"
#include "simulator/base/Text.h"

#include <algorithm>

namespace explore::stress
{

namespace
{

LogText ReadLogText(std::wstring const& path, bool isCopy)
{
    auto const bytes = sim::ReadBytes(path);
    LogText text{sim::ToUtf8(zant::FileNameOf(path)), isCopy, bytes.starts_with("\xFF\xFE"), bytes.size()};
    auto const take = [&](doctor::RawLine const& line) {
        text.lines.push_back({std::string(line.text), line.number, line.isDamaged, line.isComplete});
    };
    doctor::LineReader reader;
    reader.Add(bytes, take);
    reader.End(take);
    return text;
}

} // namespace

std::vector<LogText> ReadLogTexts(std::wstring const& folder, std::wstring const& log)
{
    auto paths = sim::FilesBelow(folder);
    std::ranges::sort(paths);
    std::vector<LogText> texts;
    for (auto const& path : paths)
    {
        if (zant::ExtensionOf(path) == zant::ExtensionOf(log))
        {
            texts.push_back(ReadLogText(path, path != log));
        }
    }
    return texts;
}

} // namespace explore::stress
