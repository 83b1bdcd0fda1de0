#pragma once
#include <cstddef>
#include <cstdint>
#include <string>

namespace test
{

// What a log may take of the machine, however long it is.
inline constexpr std::size_t mostMemory = 100'000'000;

// A live log and ten copies, each at its limit of size, full of pushes that worked.
inline constexpr std::size_t longLogFiles = 11;

// Writes them; returns how many pushes are in each.
std::uint64_t WriteLongLog(std::wstring const& folder);

// Of the test's process, in bytes. Throws when it cannot be measured.
std::size_t PeakMemory();

} // namespace test
