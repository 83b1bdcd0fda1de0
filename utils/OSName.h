#pragma once
#include <cstdint>
#include <string_view>

namespace zant
{

// What a Windows of these version numbers is called, "UNKNOWN" for one that is not in the table. buildText: not null;
// only looked at for version 10, where builds from 22000 are "Windows 11". It is read as _wtoi64 does (blanks, a sign,
// then digits up to the first other character; what does not fit into 64 bits becomes the nearest number that does),
// and of that number the low 32 bits count, as a signed number.
std::wstring_view OSName(std::uint32_t majorVersion, std::uint32_t minorVersion, wchar_t const* buildText) noexcept;

} // namespace zant
