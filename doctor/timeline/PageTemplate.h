#pragma once
#include <span>
#include <string_view>

namespace doctor
{

// The page before and behind its data, in pieces. page/assemble.py makes them when the project is built.
std::span<std::string_view const> PageHead();
std::span<std::string_view const> PageTail();

} // namespace doctor
