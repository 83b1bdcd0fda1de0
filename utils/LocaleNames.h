#pragma once
#include <cstdint>
#include <string_view>

namespace zant
{

// The locale of the desktop suite, such as "en_US", for a user whose Windows shows `uiLanguage` and whose formats are
// those of `languageId`; both are language identifiers of Windows. One of the suite's 39 codes, "en_US" for languages
// that it does not have.
//
// The language is that of the user interface. Its region is that of the formats when they are of the same language.
std::wstring_view LocaleName(std::uint16_t uiLanguage, std::uint16_t languageId) noexcept;

} // namespace zant
