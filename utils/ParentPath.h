#pragma once
#include <string>

namespace zant
{

// Replaces the path by its parent, as the system's shell function does: "C:\a\b", also with trailing backslashes,
// becomes "C:\a", that becomes "C:\", and "a" becomes empty. False, and the path is unchanged, when it has no parent (a
// drive, a root, an empty path) or has more than 259 characters. The system decides what the root of a share is.
bool RemoveLastComponent(std::wstring& path) noexcept;

} // namespace zant
