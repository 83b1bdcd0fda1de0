#include "logging/Rotation.h"

#include "logging/CopyContent.h"
#include "logging/DatedName.h"
#include "logging/LogFile.h"
#include "logging/LogPath.h"
#include "logging/OldCopies.h"

#include <array>

namespace zant
{

namespace
{

struct FindHandle
{
    FindHandle(std::wstring const& pattern, WIN32_FIND_DATAW& found) noexcept
        : value(FindFirstFileW(pattern.c_str(), &found))
    {
    }

    FindHandle(FindHandle const&) = delete;
    FindHandle& operator=(FindHandle const&) = delete;

    ~FindHandle()
    {
        if (value != INVALID_HANDLE_VALUE)
        {
            FindClose(value);
        }
    }

    HANDLE value;
};

std::vector<std::wstring> NamesLike(std::wstring const& pattern)
{
    std::vector<std::wstring> names;
    WIN32_FIND_DATAW found;
    FindHandle const search(pattern, found);
    if (search.value == INVALID_HANDLE_VALUE)
    {
        return names;
    }
    do
    {
        std::wstring_view const name = found.cFileName;
        if (name != L"." && name != L"..")
        {
            names.emplace_back(name);
        }
    } while (FindNextFileW(search.value, &found));
    return names;
}

std::wstring InFolder(std::wstring_view folder, std::wstring_view name)
{
    return std::wstring(folder) + L'\\' + std::wstring(name);
}

} // namespace

bool KeepsCopies(std::wstring const& logPath)
{
    std::array<char, 9 + 1> text = {}; // with a terminator
    ReadFirstBytes(InFolder(FolderOf(logPath), L"pvq.trace"), std::span(text).first(9));
    return std::string_view(text.data()) == "keeplogs";
}

void MoveContentToCopy(std::wstring const& logPath, SYSTEMTIME const& localNow)
{
    if (CopyContent(logPath, DatedPath(logPath, localNow)))
    {
        EmptyFile(logPath);
    }
}

void DeleteOldCopies(std::wstring const& logPath, SYSTEMTIME const& localNow)
{
    auto const folder = FolderOf(logPath);
    auto const liveName = FileNameOf(logPath);
    auto const base = WithoutExtension(liveName);
    std::array<std::wstring, 4> dayPrefixes;
    for (unsigned daysBack = 0; auto& prefix : dayPrefixes)
    {
        prefix = std::wstring(base) + L' ' + DateText(localNow, daysBack++);
    }
    auto const names = NamesLike(InFolder(folder, std::wstring(base) + L'*'));
    for (auto const& name : CopiesToDelete(names, base, liveName, dayPrefixes))
    {
        DeleteFileW(InFolder(folder, name).c_str());
    }
}

} // namespace zant
