#pragma once
#include <string>

namespace sim
{

// Under Wine: the path as a shell outside of it writes it, in UTF-8. Elsewhere the path itself.
std::string UnixPath(std::wstring const& path);

// A path as this program writes it, of one that begins with a slash as a shell writes it; any other one as it is.
std::wstring WindowsPath(std::wstring const& path);

} // namespace sim
