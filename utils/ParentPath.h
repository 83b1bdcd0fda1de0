#pragma once
#include <string>

namespace zant
{

// Replaces the path by that of its parent, as the system's shell sees it: "C:\a\b", also with backslashes at its end,
// by "C:\a", that by "C:\", and "a" by nothing. False, and the path left as it is, when it has no parent: a drive, a
// root, an empty path; nor is one told of a path longer than 259 characters. What counts as a share's root is up to the
// system.
bool RemoveLastComponent(std::wstring& path) noexcept;

} // namespace zant
