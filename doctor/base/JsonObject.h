#pragma once
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace doctor
{

// A JSON object of names and texts in UTF-8, in this order and in one line.
std::string JsonObject(std::initializer_list<std::pair<std::string_view, std::string_view>> fields);

} // namespace doctor
