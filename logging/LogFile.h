#pragma once
#include "utils/UniqueHandle.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace zant
{

// The operations on log files. A failing function leaves no handle open. std::bad_alloc leaves those that are not
// noexcept.

// Makes a path safe to write to. False where a folder above is a link or the file has further hard links: what is
// written would reach another file, or be read through one. A link at the path itself is deleted, its target left
// alone; false when that fails.
bool EnsureNoLinks(std::wstring const& path) noexcept;

// Opens the log for writing in UTF-16 (`wide`) or UTF-8, or creates it; other processes may read and write it
// meanwhile. For wide output, a file of another encoding is set aside first, and `setAsidePath` receives its new path;
// one that cannot be set aside is appended to as it stands. An empty file gets its byte-order mark, as far as it can be
// written. False when the file can be neither opened nor created.
bool OpenLog(UniqueHandle& handle, std::wstring const& path, bool wide, std::wstring& setAsidePath);

// Appends the text and a line end, or nothing when one of them cannot be written whole; false when the last write
// failed. An empty file gets its mark first, and nothing else when that fails. `wide` is the encoding of the file, told
// by its mark; the text is written in its own. The caller keeps other writers away.
bool AppendLine(HANDLE file, bool wide, std::string_view text) noexcept;
bool AppendLine(HANDLE file, bool wide, std::wstring_view text) noexcept;

// Reads the first bytes of a file, at most as many as fit. Returns their number, nothing when the file cannot be read.
std::optional<std::size_t> ReadFirstBytes(std::wstring const& path, std::span<char> bytes) noexcept;

struct FileState
{
    std::uint64_t size;
    std::string_view missing; // from its end, see MissingEnd; empty for a file without the mark of its encoding
};

// Nothing when the file's size cannot be read. When its bytes cannot be read, nothing counts as missing.
std::optional<FileState> StateOfFile(std::wstring const& path, bool wide) noexcept;

// Appends what was missing, unless the file's size has changed meanwhile. False when it cannot be written whole. The
// caller keeps other writers away.
bool CompleteEnd(HANDLE file, FileState const& state) noexcept;

// Cuts off what follows the last line end of a file that has its mark, which needs no room on the disk. False when that
// fails, or the line end is more than 4,096 bytes away. The caller keeps other writers away.
bool TakeBackLastLine(HANDLE file, std::wstring const& path, bool wide) noexcept;

// Empties the file, unless a link is in the way. A file that cannot be emptied stays as it is.
void EmptyFile(std::wstring const& path) noexcept;

} // namespace zant
