#pragma once
#include <cstdint>

namespace zant
{

// The bitness of the process and the architecture of the processor. bits: 64, or 32 from the fallback. architecture: 1
// x64, 2 Arm64, 0 any other. True when the system answered. Any thread; failures are logged.
//
// The first function asks IsWow64Process2 for the native machine and reports 64 bits in any case. When the system lacks
// that function (before Windows 10 1709) or it fails, the second function decides.
// NOLINTNEXTLINE(bugprone-reserved-identifier): callers know it by this name
bool _GetOSDetails(std::uint32_t& bits, std::uint32_t& architecture) noexcept;

// Asks IsWow64Process, and reports a process under emulation as 64-bit, any other as 32-bit: on purpose, readers of the
// log expect it. On failure `bits` is unchanged. architecture: 0 for 32 bits, else 1.
// NOLINTNEXTLINE(bugprone-reserved-identifier): callers know it by this name
bool _GetOSDetailsDeprecated(std::uint32_t& bits, std::uint32_t& architecture) noexcept;

} // namespace zant
