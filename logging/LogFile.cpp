#include "logging/LogFile.h"

#include "logging/MissingEnd.h"
#include "utils/DeleteFile.h"
#include "utils/Links.h"

#include <algorithm>

namespace zant
{

namespace
{

constexpr DWORD shareReadWrite = FILE_SHARE_READ | FILE_SHARE_WRITE;

// A reparse point is opened as itself: whoever puts a link in the log's place must not choose what is written to.
constexpr DWORD plainFile = FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT;

UniqueHandle OpenForReading(std::wstring const& path) noexcept
{
    return UniqueHandle(CreateFileW(path.c_str(), GENERIC_READ, shareReadWrite, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr));
}

UniqueHandle OpenForWriting(std::wstring const& path, DWORD disposition) noexcept
{
    return UniqueHandle(
        CreateFileW(path.c_str(), GENERIC_WRITE, shareReadWrite, nullptr, disposition, plainFile, nullptr));
}

bool Write(HANDLE file, std::string_view bytes) noexcept
{
    DWORD written = 0;
    return WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) != FALSE;
}

constexpr std::string_view MarkOf(bool wide) noexcept
{
    return wide ? "\xFF\xFE" : "\xEF\xBB\xBF";
}

// At any other place than the end a write would destroy what other processes have written. An empty file gets its mark:
// two processes that find it empty at the same time write the same bytes to the same place.
bool GoToEnd(HANDLE file, bool wide) noexcept
{
    LARGE_INTEGER end;
    if (!SetFilePointerEx(file, {}, &end, FILE_END))
    {
        return false;
    }
    return end.QuadPart != 0 || Write(file, MarkOf(wide));
}

// False also when there are fewer bytes.
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

// Nothing for a file that only has its mark, or begins with something else: text that was to be left as it stands.
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

} // namespace

bool ClearOfLinks(std::wstring const& path) noexcept
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

UniqueHandle OpenOrCreateFile(std::wstring const& path, bool wide) noexcept
{
    auto file = OpenForWriting(path, OPEN_EXISTING);
    if (!file)
    {
        file = OpenForWriting(path, CREATE_NEW);
        if (!file && GetLastError() == ERROR_FILE_EXISTS) // another process was faster
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

bool AppendLine(HANDLE file, bool wide, std::string_view text, std::string_view end) noexcept
{
    if (!GoToEnd(file, wide))
    {
        return false;
    }
    Write(file, text);
    return Write(file, end);
}

// Not through the C runtime's files: in the mode that would be asked for here ("rb, ccs=UTF-8") Windows gives the bytes
// as they are, but Wine's runtime swallows a byte-order mark.
std::optional<std::size_t> ReadFirstBytes(std::wstring const& path, std::span<char> bytes) noexcept
{
    auto const file = OpenForReading(path);
    DWORD read = 0;
    if (!file || !ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr))
    {
        return std::nullopt;
    }
    return read;
}

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

std::optional<FileState> StateOfFile(std::wstring const& path, bool wide) noexcept
{
    auto const file = OpenForReading(path);
    LARGE_INTEGER length;
    if (!file || !GetFileSizeEx(file.Get(), &length))
    {
        return std::nullopt;
    }
    auto const size = static_cast<std::uint64_t>(length.QuadPart);
    return FileState{size, MissingEndOf(file.Get(), size, wide)};
}

void CompleteEnd(HANDLE file, FileState const& state) noexcept
{
    LARGE_INTEGER end;
    if (!state.missing.empty() && SetFilePointerEx(file, {}, &end, FILE_END) &&
        static_cast<std::uint64_t>(end.QuadPart) == state.size)
    {
        Write(file, state.missing);
    }
}

void EmptyFile(std::wstring const& path) noexcept
{
    if (ClearOfLinks(path))
    {
        UniqueHandle(CreateFileW(path.c_str(), GENERIC_WRITE, shareReadWrite, nullptr, TRUNCATE_EXISTING,
                                 FILE_ATTRIBUTE_NORMAL, nullptr));
    }
}

} // namespace zant
