#pragma once
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace explore
{

// Where a play leaves the ordinary way, and how: a switch to another process, a fault. Steps count from 0.
struct Deviation
{
    std::uint32_t step;
    std::string what; // letters, digits and hyphens

    auto operator<=>(Deviation const&) const = default;
};

// All that is needed to play something again. A play without deviations is the ordinary way of its story.
struct PlayId
{
    std::string story;                      // letters, digits and hyphens
    std::vector<Deviation> deviations = {}; // in the order of their steps

    auto operator<=>(PlayId const&) const = default;
};

// "line-x-rotation:12=B,30=kill"; the name alone for the ordinary way.
std::string TextOf(PlayId const& play);

// Nothing for a text that is not the ID of a play.
std::optional<PlayId> PlayIdOf(std::string_view text);

} // namespace explore
