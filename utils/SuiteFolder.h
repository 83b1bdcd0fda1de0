#pragma once
#include <string>

namespace zant
{

// The folder that the desktop suite is installed in: "\Velmo\Velmo Tessaline" under the system's folder for programs,
// on a machine with any other processor than Arm64 that for 32-bit programs. It need not exist. False, and the result
// left as it is, when the system does not tell its folder or memory is short.
bool GetSuiteInstallFolder(std::wstring& result) noexcept;

} // namespace zant
