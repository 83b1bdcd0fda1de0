#pragma once
#include <chrono>
#include <string>
#include <string_view>

namespace doctor
{

// The text in UTF-8.
std::string Narrow(std::wstring_view text);

// "install it": "Install it."
std::string SentenceOf(std::wstring_view text);

// "40 ms", "1.5 s", "60 s".
std::string TimeText(std::chrono::milliseconds time);

} // namespace doctor
