#include "doctor/show/ShowCommand.h"

#include "doctor/log/LogFiles.h"
#include "doctor/log/ReadLogs.h"
#include "doctor/show/Follow.h"

namespace doctor
{

namespace
{

bool Matches(Filter const& filter, Entry const& entry)
{
    return entry.line ? filter.Matches(*entry.line) : filter.MatchesText(entry.raw.text);
}

FoundLogs LogsOf(ShowOptions const& options)
{
    std::error_code none;
    auto const waits = options.follows && options.waits && !std::filesystem::exists(options.paths.front(), none);
    return waits ? FoundLogs{options.paths, {}} : FindLogs(options.paths);
}

} // namespace

bool Show(ShowOptions const& options, WriteText const& write, WriteText const& writeError,
          std::function<void()> const& pause)
{
    auto logs = LogsOf(options);
    auto const live = logs.files.back();
    if (options.follows)
    {
        logs.files.pop_back();
    }
    std::filesystem::path file;
    auto const begin = [&](std::filesystem::path const& next) { file = next; };
    auto const take = [&](Entry const& entry) {
        if (Matches(options.filter, entry))
        {
            write(FormatEntry(entry, file, options.format));
        }
        return true;
    };
    auto const unread = ReadLogs(logs, begin, take);
    for (auto const& failure : unread)
    {
        writeError("not read: " + failure);
    }
    begin(live);
    Follower follower(live);
    while (options.follows)
    {
        follower.TakeNew(take);
        pause();
    }
    return unread.empty();
}

} // namespace doctor
