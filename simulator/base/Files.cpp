#include "simulator/base/Files.h"

#include "simulator/base/Error.h"
#include "simulator/base/Handle.h"
#include "simulator/base/Text.h"

#include <algorithm>
#include <iterator>
#include <windows.h>

namespace sim
{

namespace
{

constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

[[noreturn]] void ThrowSystemError(std::wstring const& what, DWORD error)
{
    throw Error(what + L": " + SystemMessage(error));
}

bool Exists(std::wstring const& path, bool asFolder)
{
    auto const attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) == asFolder;
}

std::vector<WIN32_FIND_DATAW> Entries(std::wstring const& folder)
{
    std::vector<WIN32_FIND_DATAW> entries;
    WIN32_FIND_DATAW found;
    auto* const search = FindFirstFileW((folder + L"\\*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
    {
        return entries;
    }
    do
    {
        std::wstring_view const name = found.cFileName;
        if (name != L"." && name != L"..")
        {
            entries.push_back(found);
        }
    } while (FindNextFileW(search, &found));
    FindClose(search);
    return entries;
}

bool IsFolder(WIN32_FIND_DATAW const& entry)
{
    return (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool IsLink(WIN32_FIND_DATAW const& entry)
{
    return (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

void CopyOneFile(std::wstring const& from, std::wstring const& to)
{
    if (!CopyFileW(from.c_str(), to.c_str(), FALSE))
    {
        ThrowSystemError(L"cannot copy " + from + L" to " + to, GetLastError());
    }
}

// Returns the system's error code. A file that is open cannot be replaced, and a reader has it open for a moment.
unsigned long MoveOnto(std::wstring const& path, std::wstring const& from)
{
    constexpr unsigned pause = 5; // in milliseconds, as the limit
    constexpr unsigned limit = 1'000;
    for (unsigned waited = 0;; waited += pause)
    {
        if (MoveFileExW(from.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING))
        {
            return ERROR_SUCCESS;
        }
        auto const error = GetLastError();
        if ((error != ERROR_ACCESS_DENIED && error != ERROR_SHARING_VIOLATION) || waited >= limit)
        {
            return error;
        }
        Sleep(pause);
    }
}

} // namespace

bool FileExists(std::wstring const& path)
{
    return Exists(path, false);
}

bool FolderExists(std::wstring const& path)
{
    return Exists(path, true);
}

void MakeFolder(std::wstring const& path)
{
    if (FolderExists(path))
    {
        return;
    }
    auto const parent = path.find_last_of(L'\\');
    if (parent != std::wstring::npos && parent > 2) // not "C:"
    {
        MakeFolder(path.substr(0, parent));
    }
    if (!CreateDirectoryW(path.c_str(), nullptr))
    {
        auto const error = GetLastError();
        if (!FolderExists(path)) // created by another process meanwhile
        {
            ThrowSystemError(L"cannot make the folder " + path, error);
        }
    }
}

void Remove(std::wstring const& path)
{
    if (FileExists(path))
    {
        SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
        DeleteFileW(path.c_str());
        return;
    }
    for (auto const& entry : Entries(path))
    {
        auto const child = path + L"\\" + entry.cFileName;
        IsLink(entry) && IsFolder(entry) ? static_cast<void>(RemoveDirectoryW(child.c_str())) : Remove(child);
    }
    RemoveDirectoryW(path.c_str());
}

void CopyFolder(std::wstring const& from, std::wstring const& to)
{
    MakeFolder(to);
    for (auto const& entry : Entries(from))
    {
        auto const source = from + L"\\" + entry.cFileName;
        auto const target = to + L"\\" + entry.cFileName;
        IsFolder(entry) ? CopyFolder(source, target) : CopyOneFile(source, target);
    }
}

std::vector<std::wstring> FilesBelow(std::wstring const& folder)
{
    std::vector<std::wstring> files;
    for (auto const& entry : Entries(folder))
    {
        auto path = folder + L"\\" + entry.cFileName;
        if (!IsFolder(entry))
        {
            files.push_back(std::move(path));
        }
        else if (!IsLink(entry))
        {
            auto more = FilesBelow(path);
            std::ranges::move(more, std::back_inserter(files));
        }
    }
    return files;
}

std::optional<std::uint64_t> FileSize(std::wstring const& path)
{
    WIN32_FILE_ATTRIBUTE_DATA file;
    if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &file))
    {
        return std::nullopt;
    }
    return static_cast<std::uint64_t>(file.nFileSizeHigh) << 32 | file.nFileSizeLow;
}

std::string ReadBytes(std::wstring const& path, std::uint64_t from)
{
    Handle const file(CreateFileW(path.c_str(), GENERIC_READ, shareAll, nullptr, OPEN_EXISTING, 0, nullptr));
    LARGE_INTEGER start;
    start.QuadPart = static_cast<LONGLONG>(from);
    if (!file || !SetFilePointerEx(file.Get(), start, nullptr, FILE_BEGIN))
    {
        ThrowSystemError(L"cannot read " + path, GetLastError());
    }
    std::string bytes;
    char block[16384];
    DWORD read = 0;
    do
    {
        if (!ReadFile(file.Get(), block, sizeof block, &read, nullptr))
        {
            ThrowSystemError(L"cannot read " + path, GetLastError());
        }
        bytes.append(block, read);
    } while (read > 0);
    return bytes;
}

std::wstring ReadText(std::wstring const& path)
{
    auto text = FromUtf8(ReadBytes(path));
    text.erase(0, text.starts_with(L'\xFEFF') ? 1 : 0);
    return text;
}

void WriteBytes(std::wstring const& path, std::string_view bytes)
{
    Handle const file(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS, 0, nullptr));
    DWORD written = 0;
    if (!file || !WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr))
    {
        ThrowSystemError(L"cannot write " + path, GetLastError());
    }
}

void ReplaceBytes(std::wstring const& path, std::string_view bytes)
{
    auto const written = path + L".new";
    WriteBytes(written, bytes);
    if (auto const error = MoveOnto(path, written); error != ERROR_SUCCESS)
    {
        Remove(written);
        ThrowSystemError(L"cannot replace " + path, error);
    }
}

std::wstring FullPath(std::wstring const& path)
{
    auto const size = GetFullPathNameW(path.c_str(), 0, nullptr, nullptr);
    std::wstring full(size, L'\0');
    full.resize(GetFullPathNameW(path.c_str(), size, full.data(), nullptr));
    while (full.size() > 3 && full.back() == L'\\')
    {
        full.pop_back();
    }
    return full;
}

std::wstring ParentOf(std::wstring const& path)
{
    return path.substr(0, path.find_last_of(L'\\'));
}

std::wstring SystemMessage(unsigned long error)
{
    wchar_t text[256];
    auto length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0, text,
                                 ARRAYSIZE(text), nullptr);
    while (length > 0 && std::wstring_view(L".\r\n ").find(text[length - 1]) != std::wstring_view::npos)
    {
        --length;
    }
    return std::wstring(text, length) + L" (" + std::to_wstring(error) + L")";
}

} // namespace sim
