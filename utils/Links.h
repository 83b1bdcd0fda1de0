#pragma once
#include <cstdint>
#include <string>

namespace zant
{

// Whether a path can be redirected by a link. A link in a file's path determines which file is written to or deleted.
// Callers in other modules compare with these numbers.
enum class LinkCheck : std::int32_t
{
    NoLink = 0,
    IsLink = 1,       // the path itself is a reparse point
    ParentIsLink = 2, // a folder above the path is one
    SeveralLinks = 3  // the file has more than one hard link
};

// A path that does not exist, or cannot be examined, is no link; nor are the folders of a path beyond 259 characters
// examined, since the system's function stops there and this app opens no such file. The answer can be outdated at
// once. When memory is too short to examine the folders, the answer is ParentIsLink, so that the path is not used.
LinkCheck CheckLinks(std::wstring const& path, bool checkHardLinks) noexcept;

// False also when the file cannot be opened for reading and writing, or its information cannot be read.
bool HasSeveralLinks(std::wstring const& path) noexcept;

} // namespace zant
