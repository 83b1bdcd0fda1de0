#pragma once
#include <cstdint>

namespace zant
{

// The bitness of the process and the processor's architecture. bits: 64, or 32 as told by the fallback. architecture:
// 1 x64, 2 Arm64, 0 any other. True when the system answered. Any thread; failures are logged.
//
// The first asks IsWow64Process2 for the native machine and reports 64 bits whatever the process runs under. Where the
// system has no such function (before Windows 10 1709) or it fails, the result is that of the second.
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): callers know it by this name
bool _GetOSDetails(std::uint32_t& bits, std::uint32_t& architecture) noexcept;

// Asks IsWow64Process, and takes a process under emulation for 64 bits, one without for 32: on purpose, that is what
// readers of the log know. When that fails, bits stays as it came. architecture: 0 for 32 bits, else 1.
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): callers know it by this name
bool _GetOSDetailsDeprecated(std::uint32_t& bits, std::uint32_t& architecture) noexcept;

} // namespace zant
