#pragma once
#include <string>
#include <string_view>

namespace doctor
{

// Appends a character; it must be no surrogate and at most U+10FFFF.
void AppendUtf8(std::string& text, char32_t character);

// Replaces each byte that belongs to no well-formed character by U+FFFD. False when there was none.
bool ReplaceMalformed(std::string& text);

// Text for a terminal: U+FFFD in the place of each control character but the tab, so that the text cannot move the
// cursor.
std::string WithoutControls(std::string_view text);

inline constexpr char32_t replacementCharacter = 0xFFFD;

} // namespace doctor
