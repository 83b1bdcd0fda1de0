#pragma once
#include <string>

namespace zant
{

// The install folder of the desktop suite: "\Velmo\Velmo Tessaline" under the system's program folder, on any processor
// but Arm64 the one for 32-bit programs. It need not exist. False, and `result` is unchanged, when the system does not
// return its folder or memory is short.
bool GetSuiteInstallFolder(std::wstring& result) noexcept;

} // namespace zant
