#pragma once
#include <nlohmann/json.hpp>
#include <string>

namespace doctor
{

using Json = nlohmann::ordered_json;

// In one line of UTF-8; bytes that are no text come out as U+FFFD.
inline std::string JsonText(Json const& value)
{
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

} // namespace doctor
