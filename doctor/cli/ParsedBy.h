#pragma once
#include <CLI/CLI.hpp>
#include <string>

namespace doctor
{

// Refuses a text of which `parse` makes nothing: "'x' is no time".
template <typename Parse>
CLI::Validator ParsedBy(Parse parse, std::string const& expected)
{
    return {[=](std::string const& text) { return parse(text) ? std::string() : "'" + text + "' is no " + expected; },
            ""};
}

inline constexpr char expectedTime[] = R"(time: 2024-01-05, "2024-01-05 09:30" or "2024-01-05 09:30:12")";

} // namespace doctor
