#pragma once
#include "utils/UniqueHandle.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace zant
{

// What the target does with files. Every function says how it fails by what it returns, and leaves no handle open then.

// Whether the log may be written to this path: not where a folder above is a link or the file has further hard links,
// since what is written would land elsewhere, or be read elsewhere. A link at the path itself is deleted first, and
// what it leads to left alone; where that fails the answer is no.
bool ClearOfLinks(std::wstring const& path) noexcept;

// The file for writing, created when missing; others may read and write it meanwhile. An empty one gets the byte-order
// mark of UTF-16 (`wide`) or of UTF-8, as far as it can be written. Null when the file can be neither opened nor
// created.
UniqueHandle OpenOrCreateFile(std::wstring const& path, bool wide) noexcept;

// Appends the text and then its end; false when the last write failed. An empty file gets its mark first, and nothing
// else where that fails. The caller keeps other writers away.
bool AppendLine(HANDLE file, bool wide, std::string_view text, std::string_view end) noexcept;

// Reads the first bytes of a file, at most as many as fit; how many there were, nothing when it cannot be read.
std::optional<std::size_t> ReadFirstBytes(std::wstring const& path, std::span<char> bytes) noexcept;

// False for a file that can be read and does not begin with a byte-order mark of UTF-16, of either order.
bool MayBeWideFile(std::wstring const& path) noexcept;

struct FileState
{
    std::uint64_t size;
    std::string_view missing; // at its end, as MissingEnd tells; empty for a file without the mark of its encoding
};

// Nothing when its size cannot be read; where its bytes cannot, nothing is missing.
std::optional<FileState> StateOfFile(std::wstring const& path, bool wide) noexcept;

// Appends what was missing, unless the file has another size by now. The caller keeps other writers away.
void CompleteEnd(HANDLE file, FileState const& state) noexcept;

// Empties the file, which must be clear of links; failing leaves it as it was.
void EmptyFile(std::wstring const& path) noexcept;

} // namespace zant
