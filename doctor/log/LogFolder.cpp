#include "doctor/log/LogFolder.h"

#include "doctor/base/SystemText.h"

#include <memory>
#include <windows.h>

namespace doctor
{

namespace
{

struct CloseSearch
{
    void operator()(HANDLE search) const noexcept { FindClose(search); }
};

using Search = std::unique_ptr<void, CloseSearch>;

void AddFound(std::filesystem::path const& folder, WIN32_FIND_DATAW const& entry, FoundLogs& found)
{
    std::wstring_view const name = entry.cFileName;
    auto const isFolder = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    auto const isLink = (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    if (isFolder && !isLink && name != L"." && name != L"..")
    {
        AddLogsBelow(folder / name, found);
    }
    else if (!isFolder && HasLogName(name))
    {
        found.files.push_back(folder / name);
    }
}

} // namespace

bool HasLogName(std::filesystem::path const& file)
{
    return CompareStringOrdinal(file.extension().c_str(), -1, L".log", -1, TRUE) == CSTR_EQUAL;
}

bool IsSameFile(std::filesystem::path const& one, std::filesystem::path const& other)
{
    return CompareStringOrdinal(one.c_str(), -1, other.c_str(), -1, TRUE) == CSTR_EQUAL;
}

void AddLogsBelow(std::filesystem::path const& folder, FoundLogs& found)
{
    WIN32_FIND_DATAW entry;
    auto* const handle = FindFirstFileW((folder / L"*").c_str(), &entry);
    if (handle == INVALID_HANDLE_VALUE)
    {
        found.unread.push_back(FailureText(folder, GetLastError()));
        return;
    }
    Search const search(handle);
    do
    {
        AddFound(folder, entry, found);
    } while (FindNextFileW(search.get(), &entry));
    if (auto const error = GetLastError(); error != ERROR_NO_MORE_FILES)
    {
        found.unread.push_back(FailureText(folder, error));
    }
}

} // namespace doctor
