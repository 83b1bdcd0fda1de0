#pragma once
#include <cstdint>
#include <string_view>

namespace zant
{

// The name of a Windows version, "UNKNOWN" for one that is not in the table. buildText: not null; used for version 10
// only, where builds from 22000 are "Windows 11". It is read as by _wtoi64 (blanks, a sign, digits up to the first
// other character; saturates at 64 bits), and the low 32 bits of that number count, as a signed number.
std::wstring_view OSName(std::uint32_t majorVersion, std::uint32_t minorVersion, wchar_t const* buildText) noexcept;

} // namespace zant
