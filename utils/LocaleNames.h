#pragma once
#include <cstdint>
#include <string_view>

namespace zant
{

// The suite's locale, such as "en_US", for a user with these Windows language identifiers: `uiLanguage` of the user
// interface, `languageId` of the formats. One of the suite's 39 codes; "en_US" for a language without one.
//
// The language is that of the user interface. The region is that of the formats if they have the same language.
std::wstring_view LocaleName(std::uint16_t uiLanguage, std::uint16_t languageId) noexcept;

} // namespace zant
