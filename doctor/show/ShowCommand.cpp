#include "doctor/show/ShowCommand.h"

#include "doctor/log/LogFiles.h"
#include "doctor/show/Follow.h"

namespace doctor
{

namespace
{

bool Matches(Filter const& filter, Entry const& entry)
{
    return entry.line ? filter.Matches(*entry.line) : filter.MatchesText(entry.raw.text);
}

std::vector<std::filesystem::path> FilesOf(ShowOptions const& options)
{
    std::error_code none;
    auto const waits = options.follows && options.waits && !std::filesystem::exists(options.paths.front(), none);
    return waits ? options.paths : LogFilesAt(options.paths);
}

} // namespace

void Show(ShowOptions const& options, WriteText const& write, std::function<void()> const& pause)
{
    auto files = FilesOf(options);
    auto const live = files.back();
    if (options.follows)
    {
        files.pop_back();
    }
    auto const writeFrom = [&](std::filesystem::path const& file) {
        return [&](Entry const& entry) {
            if (Matches(options.filter, entry))
            {
                write(FormatEntry(entry, file, options.format));
            }
            return true;
        };
    };
    for (auto const& file : files)
    {
        ReadLog(file, writeFrom(file));
    }
    Follower follower(live);
    while (options.follows)
    {
        follower.TakeNew(writeFrom(live));
        pause();
    }
}

} // namespace doctor
