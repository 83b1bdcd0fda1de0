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
    if (options.ownLog.empty())
    {
        return FindLogs(options.paths);
    }
    std::error_code none;
    auto const waits = options.follows && !std::filesystem::exists(options.ownLog, none);
    return waits ? FoundLogs{} : FindLogs({options.ownLog.parent_path()});
}

} // namespace

bool Show(ShowOptions const& options, WriteText const& write, WriteText const& writeError,
          std::function<void()> const& pause)
{
    auto logs = LogsOf(options);
    auto const live = options.ownLog.empty() ? logs.files.back() : options.ownLog;
    if (options.follows)
    {
        std::erase_if(logs.files, [&](std::filesystem::path const& each) { return IsSameFile(each, live); });
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
