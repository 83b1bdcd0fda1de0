#pragma once
#include <string>

namespace zant
{

// Deletes a file. On a read-only file it clears the attribute and tries again (logged at DEBUG). A link itself is
// deleted, not its target. True when nothing exists at the path afterwards, including when nothing did before;
// otherwise false (logged at ERROR), also for a folder, which stays.
bool DeleteFileWithRetry(std::wstring const& path) noexcept;

} // namespace zant
