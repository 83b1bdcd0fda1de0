#pragma once
#include <optional>
#include <string>
#include <string_view>

// The platform's BackgroundTaskCancellationReason.
namespace sim::CancellationReason
{

constexpr int abort = 0;
constexpr int executionTimeExceeded = 9;
constexpr int resourceRevocation = 10;

// Its name in the platform; the number itself for one that has none.
std::wstring NameOf(int reason);

// nullopt when there is none of that name.
std::optional<int> Parse(std::wstring_view name);

// All names, separated by blanks.
std::wstring Names();

} // namespace sim::CancellationReason
