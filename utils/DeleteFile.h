#pragma once
#include <string>

namespace zant
{

// Deletes a file, also a read-only one: that attribute is taken away for a second attempt (logged at DEBUG). A link is
// deleted itself, not what it leads to. True when nothing is at the path afterwards, as when nothing was there; else
// false (logged at ERROR), as for a folder, which stays.
bool DeleteFileWithRetry(std::wstring const& path) noexcept;

} // namespace zant
