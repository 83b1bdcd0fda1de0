#pragma once
#include <cstdint>
#include <string>

namespace zant
{

// The version that the system reports. A program whose manifest does not list Windows 10 as supported sees 6.2.
struct OSVersion
{
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    std::uint32_t servicePack = 0; // its major number
};

// Any thread, for all of these; nothing is logged. When the system does not answer or memory is short, the functions
// that return a string return false and leave it unchanged.

// Probes the numbers with questions of the form "is the system at least this version?". Always true. A major number
// above 13, a minor number above 8 and a service pack above 8 are not found: such a number stays 0.
bool ProbeOSVersion(OSVersion& version) noexcept;

// "major.minor.servicePack", such as "10.0.0".
bool GetOSVersionText(OSVersion const& version, std::wstring& text) noexcept;

// The build number in decimal, such as "22631".
bool GetOSBuildText(std::wstring& text) noexcept;

// The name of a system of that version. For version 10 the build of the running system decides.
bool GetOSName(OSVersion const& version, std::wstring& name) noexcept;

} // namespace zant
