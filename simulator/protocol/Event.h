#pragma once
#include "simulator/base/Moment.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sim
{

// Something that happened on the device, as the platform records it.
struct Event
{
    Moment time = 0;
    std::wstring kind;                 // one word, such as desktop-started
    std::vector<std::wstring> details; // each name=value

    // A line of the journal; the opposite of ParseEvent.
    std::wstring Line() const;

    // The same without the date and time.
    std::wstring Text() const;

    // The value of the detail of that name.
    std::optional<std::wstring> Detail(std::wstring_view name) const;
};

std::wstring Detail(std::wstring_view name, std::wstring_view value);

// nullopt for any other line.
std::optional<Event> ParseEvent(std::wstring_view line);

} // namespace sim
