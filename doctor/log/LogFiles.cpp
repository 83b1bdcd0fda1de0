#include "doctor/log/LogFiles.h"

#include "doctor/base/Error.h"
#include "doctor/base/SystemText.h"
#include "doctor/log/InputFile.h"
#include "doctor/log/ReadLog.h"

#include <algorithm>
#include <compare>
#include <windows.h>

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

void AddFolder(fs::path const& folder, FoundLogs& found)
{
    FoundLogs added;
    AddLogsBelow(folder, added);
    if (added.files.empty() && added.unread.empty())
    {
        throw Error("there is no log in " + PathText(folder) + ": no file whose name ends in .log");
    }
    std::ranges::move(added.files, std::back_inserter(found.files));
    std::ranges::move(added.unread, std::back_inserter(found.unread));
}

void AddPath(fs::path const& path, FoundLogs& found)
{
    auto const attributes = GetFileAttributesW(path.c_str());
    auto const error = attributes == INVALID_FILE_ATTRIBUTES ? GetLastError() : ERROR_SUCCESS;
    if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND || error == ERROR_INVALID_NAME)
    {
        throw Error("there is no log at " + PathText(path));
    }
    if (error != ERROR_SUCCESS)
    {
        found.unread.push_back(FailureText(path, error));
    }
    else if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
    {
        AddFolder(path, found);
    }
    else
    {
        found.files.push_back(path);
    }
}

std::vector<Place> PlacesOf(std::vector<fs::path> const& files, std::vector<std::string>& unread)
{
    std::vector<Place> places;
    for (auto const& file : files)
    {
        auto const path = fs::absolute(file).lexically_normal();
        auto const isSame = [&](Place const& place) { return IsSameFile(place.path, path); };
        if (std::ranges::any_of(places, isSame))
        {
            continue;
        }
        try
        {
            places.push_back({FirstTimeIn(path), path.stem().native() + behindAll, path});
        }
        catch (ReadError const& error)
        {
            unread.emplace_back(error.what());
        }
    }
    return places;
}

bool IsCopy(Place const& place, Place const& live)
{
    return place.path.parent_path() == live.path.parent_path() &&
           place.path.stem().native().starts_with(live.path.stem().native() + L' ');
}

// A live file begins when the last of its copies has begun, whatever its clock says.
void MoveBehindCopies(std::vector<Place>& places)
{
    for (auto& live : places)
    {
        for (auto const& place : places)
        {
            live.begin = IsCopy(place, live) ? std::max(live.begin, place.begin) : live.begin;
        }
    }
}

} // namespace

FoundLogs FindLogs(std::vector<fs::path> const& paths)
{
    FoundLogs found;
    for (auto const& path : paths)
    {
        AddPath(path, found);
    }
    auto places = PlacesOf(found.files, found.unread);
    if (places.empty() && !found.unread.empty())
    {
        throw Error(found.unread.front());
    }
    MoveBehindCopies(places);
    std::ranges::sort(places);
    found.files.clear();
    std::ranges::transform(places, std::back_inserter(found.files), &Place::path);
    return found;
}

} // namespace doctor
