#pragma once
#include <cstdint>
#include <string>

namespace zant
{

// What the running system calls itself. A program whose manifest does not name Windows 10 as supported sees 6.2 there.
struct OSVersion
{
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    std::uint32_t servicePack = 0; // its major number
};

// Any thread, for all of these; nothing is logged. Where a text is not given, because the system does not tell or
// memory is short, the result is false and the text stays as it was.

// Finds the numbers by asking the system whether it is at least this or that version; always true. A major above 13, a
// minor above 8 and a service pack above 8 are not found: such a number stays 0.
bool ProbeOSVersion(OSVersion& version) noexcept;

// "major.minor.servicePack", such as "10.0.0".
bool GetOSVersionText(OSVersion const& version, std::wstring& text) noexcept;

// The build number in decimal, such as "22631".
bool GetOSBuildText(std::wstring& text) noexcept;

// The name of a system of that version; of those numbered 10 the running system's build tells which it is.
bool GetOSName(OSVersion const& version, std::wstring& name) noexcept;

} // namespace zant
