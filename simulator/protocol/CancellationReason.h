#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// The platform's BackgroundTaskCancellationReason.
namespace sim::CancellationReason
{

constexpr std::uint32_t abort = 0;
constexpr std::uint32_t loggingOff = 2;
constexpr std::uint32_t servicingUpdate = 3;
constexpr std::uint32_t systemPolicy = 7;
constexpr std::uint32_t executionTimeExceeded = 9;
constexpr std::uint32_t resourceRevocation = 10;
constexpr std::uint32_t energySaver = 11;

// Its name in the platform; the number for any other value.
std::wstring NameOf(std::uint32_t reason);

// nullopt for an unknown name.
std::optional<std::uint32_t> Parse(std::wstring_view name);

// All names, separated by blanks.
std::wstring Names();

} // namespace sim::CancellationReason
