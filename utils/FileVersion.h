#pragma once
#include <string>

namespace zant
{

// Reads the file version from the version resource of a program or library: "major.minor.build.revision", each up to
// 65535. False, and `text` is unchanged, when the file does not exist, has no version, or memory is short. Any thread;
// nothing is logged.
bool GetFileVersionText(std::wstring const& path, std::wstring& text) noexcept;

} // namespace zant
