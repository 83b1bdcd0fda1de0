#pragma once
#include <string>

namespace sim
{

// Under Wine the Unix path, in UTF-8. Elsewhere the path itself.
std::string UnixPath(std::wstring const& path);

// The Windows path of a Unix path, which begins with a slash; any other path unchanged.
std::wstring WindowsPath(std::wstring const& path);

} // namespace sim
