#pragma once
#include "utils/UniqueHandle.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace zant
{

// What the target does with files. Every function says how it fails by what it returns, and leaves no handle open then.

// Whether the log may be written to this path: not where a folder above is a link or the file has further hard links,
// since what is written would land elsewhere, or be read elsewhere. A link at the path itself is deleted first, and
// what it leads to left alone; where that fails the answer is no.
bool ClearOfLinks(std::wstring const& path) noexcept;

// The existing file for writing, others may read and write it meanwhile; null when that fails.
UniqueHandle OpenExistingFile(std::wstring const& path) noexcept;

// The same for a file that did not exist, begun with the byte-order mark of UTF-16 (`wide`) or of UTF-8. Null when it
// cannot be created; a mark that cannot be written is let go.
UniqueHandle CreateMarkedFile(std::wstring const& path, bool wide) noexcept;

// Reads the first bytes of a file, at most as many as fit; how many there were, nothing when it cannot be read.
std::optional<std::size_t> ReadFirstBytes(std::wstring const& path, std::span<char> bytes) noexcept;

// False for a file that can be read and does not begin with a byte-order mark of UTF-16, of either order.
bool MayBeWideFile(std::wstring const& path) noexcept;

// Nothing when it cannot be had.
std::optional<std::uint64_t> FileSize(std::wstring const& path) noexcept;

// Copies the content of one file into another, which is created when missing and must be clear of links. True when the
// source could be read to its end, whatever became of the writing.
bool CopyContent(std::wstring const& source, std::wstring const& destination) noexcept;

// Empties the file, which must be clear of links; failing leaves it as it was.
void EmptyFile(std::wstring const& path) noexcept;

} // namespace zant
