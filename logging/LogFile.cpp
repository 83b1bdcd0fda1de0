#include "logging/LogFile.h"

#include "logging/DatedName.h"
#include "logging/Folders.h"
#include "logging/MissingEnd.h"
#include "utils/DeleteFile.h"
#include "utils/Links.h"

#include <algorithm>

namespace zant
{

namespace
{

constexpr DWORD shareReadWrite = FILE_SHARE_READ | FILE_SHARE_WRITE;

// A reparse point is opened as itself: a link in the log's place must not choose the file that is written to.
constexpr DWORD plainFile = FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT;

UniqueHandle OpenForReading(std::wstring const& path, DWORD share) noexcept
{
    return UniqueHandle(
        CreateFileW(path.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
}

UniqueHandle OpenForWriting(std::wstring const& path, DWORD disposition) noexcept
{
    return UniqueHandle(
        CreateFileW(path.c_str(), GENERIC_WRITE, shareReadWrite, nullptr, disposition, plainFile, nullptr));
}

struct Written
{
    bool hasSucceeded;
    bool isWhole;
};

// A disk that becomes full may take a part of the bytes, which is no failure to the system.
Written Write(HANDLE file, std::string_view bytes) noexcept
{
    DWORD written = 0;
    auto const hasSucceeded =
        WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) != FALSE;
    return {hasSucceeded, hasSucceeded && written == bytes.size()};
}

constexpr std::string_view MarkOf(bool wide) noexcept
{
    return wide ? "\xFF\xFE" : "\xEF\xBB\xBF";
}

void CutOffFrom(HANDLE file, LARGE_INTEGER place) noexcept
{
    if (SetFilePointerEx(file, place, nullptr, FILE_BEGIN))
    {
        SetEndOfFile(file);
    }
}

// A write at any other place than the end would overwrite lines of other processes. An empty file gets its mark: two
// processes that find it empty at the same time write the same bytes to the same place. Returns the place of the next
// write, nothing on failure.
std::optional<LARGE_INTEGER> GoToEnd(HANDLE file, bool wide) noexcept
{
    LARGE_INTEGER end;
    if (!SetFilePointerEx(file, {}, &end, FILE_END))
    {
        return std::nullopt;
    }
    if (end.QuadPart != 0)
    {
        return end;
    }
    auto const mark = MarkOf(wide);
    auto const written = Write(file, mark);
    if (written.hasSucceeded && !written.isWhole)
    {
        CutOffFrom(file, end); // half a mark would shift all that follows
    }
    end.QuadPart = static_cast<LONGLONG>(mark.size());
    return written.isWhole ? std::optional(end) : std::nullopt;
}

// False also when the file has fewer bytes.
bool ReadAt(HANDLE file, std::uint64_t place, std::span<char> bytes) noexcept
{
    LARGE_INTEGER position;
    position.QuadPart = static_cast<LONGLONG>(place);
    DWORD read = 0;
    if (!SetFilePointerEx(file, position, nullptr, FILE_BEGIN) ||
        !ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr))
    {
        return false;
    }
    return read == bytes.size();
}

// Empty for a file that only has its mark, and for one without it: its text is left as it stands.
std::string_view MissingEndOf(HANDLE file, std::uint64_t size, bool wide) noexcept
{
    auto const mark = MarkOf(wide);
    char bytes[3];
    auto const first = std::span(bytes).first(mark.size());
    if (size <= mark.size() || !ReadAt(file, 0, first) || !std::ranges::equal(first, mark))
    {
        return {};
    }
    char last[2];
    return ReadAt(file, size - 2, last) ? MissingEnd(size, last[0], last[1], wide) : std::string_view();
}

// The place behind the last line end of a file with its mark; nothing when it is far from the file's end or cannot be
// read.
std::optional<LARGE_INTEGER> BeginOfLastLine(HANDLE file, std::uint64_t size, bool wide) noexcept
{
    char bytes[4096];
    auto const mark = MarkOf(wide).size();
    auto const isWhole = size - mark <= sizeof bytes;
    auto const begin = isWhole ? mark : size - sizeof bytes + (wide ? size % 2 : 0);
    auto const tail = std::span(bytes).first(size - begin);
    if (!ReadAt(file, begin, tail))
    {
        return std::nullopt;
    }
    auto const lineEnd = wide ? std::string_view("\n\0", 2) : std::string_view("\n");
    std::string_view const text(tail.data(), tail.size());
    auto found = text.rfind(lineEnd);
    while (wide && found != text.npos && found % 2 != 0) // within two characters
    {
        found = text.rfind(lineEnd, found - 1);
    }
    LARGE_INTEGER place;
    place.QuadPart = static_cast<LONGLONG>(begin + (found != text.npos ? found + lineEnd.size() : 0));
    return isWhole || found != text.npos ? std::optional(place) : std::nullopt;
}

// False for a file that can be read and does not begin with a byte-order mark of UTF-16, of either byte order.
bool MayBeWideFile(std::wstring const& path) noexcept
{
    char bytes[2];
    auto const count = ReadFirstBytes(path, bytes);
    if (!count)
    {
        return true;
    }
    std::string_view const mark(bytes, *count);
    return mark == "\xFF\xFE" || mark == "\xFE\xFF";
}

// Renames the log to its dated name, which it returns; replaces no file and follows no link. Empty on failure: the log
// keeps its name.
std::wstring SetAside(std::wstring const& path)
{
    auto aside = DatedPath(path, LocalNow());
    if (aside.empty() || path.empty() || Exists(aside) || CheckLinks(aside, false) != LinkCheck::NoLink ||
        !MoveFileExW(path.c_str(), aside.c_str(), 0))
    {
        return {};
    }
    return aside;
}

UniqueHandle OpenOrCreateFile(std::wstring const& path, bool wide) noexcept
{
    auto file = OpenForWriting(path, OPEN_EXISTING);
    if (!file)
    {
        file = OpenForWriting(path, CREATE_NEW);
        if (!file && GetLastError() == ERROR_FILE_EXISTS) // another process has created it meanwhile
        {
            file = OpenForWriting(path, OPEN_EXISTING);
        }
    }
    if (file)
    {
        GoToEnd(file.Get(), wide);
    }
    return file;
}

// A line is written whole or not at all: the next one, which any process may write, would continue the part of it.
bool AppendBytes(HANDLE file, bool wide, std::string_view text, std::string_view end) noexcept
{
    auto const place = GoToEnd(file, wide);
    if (!place)
    {
        return false;
    }
    auto const first = Write(file, text);
    auto const last = Write(file, end);
    if (!first.isWhole || !last.isWhole)
    {
        CutOffFrom(file, *place);
    }
    return last.hasSucceeded;
}

std::string_view BytesOf(std::wstring_view text) noexcept
{
    return {reinterpret_cast<char const*>(text.data()), text.size() * sizeof(wchar_t)};
}

} // namespace

bool EnsureNoLinks(std::wstring const& path) noexcept
{
    switch (CheckLinks(path, true))
    {
    case LinkCheck::NoLink:
        return true;
    case LinkCheck::IsLink:
        return DeleteFileWithRetry(path);
    default:
        return false;
    }
}

bool OpenLog(UniqueHandle& handle, std::wstring const& path, bool wide, std::wstring& setAsidePath)
{
    if (wide && !MayBeWideFile(path))
    {
        handle.Reset();
        if (auto aside = SetAside(path); !aside.empty())
        {
            setAsidePath = std::move(aside);
        }
    }
    if (!EnsureNoLinks(path))
    {
        return false;
    }
    handle = OpenOrCreateFile(path, wide);
    return static_cast<bool>(handle);
}

bool AppendLine(HANDLE file, bool wide, std::string_view text) noexcept
{
    return AppendBytes(file, wide, text, "\r\n");
}

bool AppendLine(HANDLE file, bool wide, std::wstring_view text) noexcept
{
    return AppendBytes(file, wide, BytesOf(text), BytesOf(L"\r\n"));
}

// Not with the C runtime's files: opened as "rb, ccs=UTF-8" they give the raw bytes on Windows, but Wine's runtime
// skips a byte-order mark.
std::optional<std::size_t> ReadFirstBytes(std::wstring const& path, std::span<char> bytes) noexcept
{
    // Another process that looks at the same file may rename it meanwhile, to set it aside.
    auto const file = OpenForReading(path, shareReadWrite | FILE_SHARE_DELETE);
    DWORD read = 0;
    if (!file || !ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr))
    {
        return std::nullopt;
    }
    return read;
}

std::optional<FileState> StateOfFile(std::wstring const& path, bool wide) noexcept
{
    auto const file = OpenForReading(path, shareReadWrite);
    LARGE_INTEGER length;
    if (!file || !GetFileSizeEx(file.Get(), &length))
    {
        return std::nullopt;
    }
    auto const size = static_cast<std::uint64_t>(length.QuadPart);
    return FileState{size, MissingEndOf(file.Get(), size, wide)};
}

bool CompleteEnd(HANDLE file, FileState const& state) noexcept
{
    LARGE_INTEGER end;
    if (state.missing.empty())
    {
        return true;
    }
    if (!SetFilePointerEx(file, {}, &end, FILE_END))
    {
        return false;
    }
    return static_cast<std::uint64_t>(end.QuadPart) != state.size || Write(file, state.missing).isWhole;
}

bool TakeBackLastLine(HANDLE file, std::wstring const& path, bool wide) noexcept
{
    auto const reading = OpenForReading(path, shareReadWrite);
    LARGE_INTEGER size;
    if (!reading || !GetFileSizeEx(reading.Get(), &size))
    {
        return false;
    }
    auto const begin = BeginOfLastLine(reading.Get(), static_cast<std::uint64_t>(size.QuadPart), wide);
    return begin && SetFilePointerEx(file, *begin, nullptr, FILE_BEGIN) != FALSE && SetEndOfFile(file) != FALSE;
}

void EmptyFile(std::wstring const& path) noexcept
{
    if (EnsureNoLinks(path))
    {
        UniqueHandle(CreateFileW(path.c_str(), GENERIC_WRITE, shareReadWrite, nullptr, TRUNCATE_EXISTING,
                                 FILE_ATTRIBUTE_NORMAL, nullptr));
    }
}

} // namespace zant
