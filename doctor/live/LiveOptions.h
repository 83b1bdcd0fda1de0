#pragma once
#include <chrono>
#include <filesystem>
#include <optional>

namespace doctor
{

// How `doctor live` looks at the machine.
struct LiveOptions
{
    std::optional<std::filesystem::path> log;                   // nothing: where Windows has the app's
    std::chrono::milliseconds limit = std::chrono::seconds(60); // for the connection, and for the channel
    bool hasFullUris = false;
};

} // namespace doctor
