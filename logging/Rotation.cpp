#include "logging/Rotation.h"

#include "logging/CopyContent.h"
#include "logging/DatedName.h"
#include "logging/LogFile.h"
#include "logging/LogPath.h"
#include "logging/OldCopies.h"

#include <algorithm>
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

template <typename Function>
void ForEachName(std::wstring const& pattern, Function function)
{
    WIN32_FIND_DATAW found;
    FindHandle const search(pattern, found);
    if (search.value == INVALID_HANDLE_VALUE)
    {
        return;
    }
    do
    {
        std::wstring_view const name = found.cFileName;
        if (name != L"." && name != L"..")
        {
            function(std::wstring(name));
        }
    } while (FindNextFileW(search.value, &found));
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
    std::vector<std::wstring> dayPrefixes(4);
    for (unsigned daysBack = 0; auto& prefix : dayPrefixes)
    {
        prefix = std::wstring(base) + L' ' + DateText(localNow, daysBack++);
    }
    auto const remove = [&](std::wstring const& name) { DeleteFileW(InFolder(folder, name).c_str()); };
    OldCopies copies(base, liveName, std::move(dayPrefixes));
    ForEachName(InFolder(folder, std::wstring(base) + L'*'), [&](std::wstring const& name) {
        if (copies.Judge(name))
        {
            remove(name);
        }
    });
    std::ranges::for_each(copies.TakeSurplus(), remove);
}

} // namespace zant
