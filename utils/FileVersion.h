#pragma once
#include <string>

namespace zant
{

// The file version in the version resource of a program or library, as "major.minor.build.revision", each up to 65535.
// False, and the text stays as it was, when there is no such file or it has no version, or memory is short. Any thread;
// nothing is logged.
bool GetFileVersionText(std::wstring const& path, std::wstring& text) noexcept;

} // namespace zant
