#pragma once
#include <cstdint>
#include <string>

namespace zant
{

// Whether a path leads where it seems to. Who can put a link in a file's way chooses what is written to or deleted.
// The numbers are what callers of other modules compare with.
enum class LinkCheck : std::int32_t
{
    NoLink = 0,
    IsLink = 1,       // the path itself is a reparse point
    ParentIsLink = 2, // a folder above the path is one
    SeveralLinks = 3  // the file has more than one hard link
};

// What does not exist, or cannot be asked, is no link; nor is anything above a path of more than 259 characters, where
// the system's function ends, and where this app opens no file. Nothing is promised for what happens to the path
// afterwards. When memory is too short to look at the folders above, the answer is ParentIsLink: a path that was not
// looked at is not to be used.
LinkCheck CheckLinks(std::wstring const& path, bool checkHardLinks) noexcept;

// False also for a file that cannot be opened for reading and writing, or whose information cannot be read.
bool HasSeveralLinks(std::wstring const& path) noexcept;

} // namespace zant
