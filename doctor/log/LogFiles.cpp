#include "doctor/log/LogFiles.h"

#include "doctor/base/Error.h"
#include "doctor/base/SystemText.h"
#include "doctor/log/ReadLog.h"

#include <algorithm>
#include <compare>

namespace doctor
{

namespace
{

namespace fs = std::filesystem;

constexpr wchar_t behindAll = L'\xFFFF';

// What decides the order of a file.
struct Place
{
    LogTime begin;
    std::wstring name; // the live file's name sorts behind those of its copies, which continue it
    fs::path path;

    auto operator<=>(Place const&) const = default;
};

LogTime FirstTimeIn(fs::path const& path)
{
    auto time = LogTime::min();
    auto linesLeft = 1000;
    ReadLog(path, [&](Entry const& entry) {
        if (entry.line)
        {
            time = entry.line->time;
            return false;
        }
        return --linesLeft > 0;
    });
    return time;
}

void AddFolder(std::vector<fs::path>& files, fs::path const& folder)
{
    auto const before = files.size();
    std::error_code error;
    for (fs::recursive_directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
    {
        if (entry->path().extension() == L".log" && entry->is_regular_file(error))
        {
            files.push_back(entry->path());
        }
    }
    if (error)
    {
        throw Error(PathText(folder) + ": " + error.message());
    }
    if (files.size() == before)
    {
        throw Error("there is no log in " + PathText(folder) + ": no file whose name ends in .log");
    }
}

} // namespace

std::vector<fs::path> LogFilesAt(std::vector<fs::path> const& paths)
{
    std::vector<fs::path> files;
    for (auto const& path : paths)
    {
        std::error_code error;
        if (fs::is_directory(path, error))
        {
            AddFolder(files, path);
        }
        else if (fs::exists(path, error))
        {
            files.push_back(path);
        }
        else
        {
            throw Error("there is no log at " + PathText(path));
        }
    }
    std::vector<Place> places;
    places.reserve(files.size());
    for (auto const& file : files)
    {
        places.push_back({FirstTimeIn(file), file.stem().native() + behindAll, fs::absolute(file)});
    }
    std::ranges::sort(places);
    auto const same = std::ranges::unique(places, {}, &Place::path);
    places.erase(same.begin(), same.end());
    files.clear();
    std::ranges::transform(places, std::back_inserter(files), &Place::path);
    return files;
}

} // namespace doctor
