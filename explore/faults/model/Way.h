#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace explore::faults
{

// HRESULTs with which calls fail.
struct Results
{
    static constexpr auto failed = static_cast<std::int32_t>(0x80004005);
    static constexpr auto outOfMemory = static_cast<std::int32_t>(0x8007000E);
    static constexpr auto disconnected = static_cast<std::int32_t>(0x80010108);
    static constexpr auto closed = static_cast<std::int32_t>(0x80000013);
};

// How a call of the platform goes.
struct Way
{
    enum class Kind
    {
        Ordinary,
        Now,          // it fails
        Null,         // it gives null
        Completion,   // its operation fails
        Cancelled,    // its operation is cancelled
        Never,        // its operation does not end
        Ended,        // its operation has ended before the caller can subscribe
        Unheard,      // subscribing to the end of its operation fails
        Status,       // its operation ends with another status than success
        HelperCloses, // before the call
        HelperDies,
        TaskCancelled,
        Killed, // the app's process
    };

    Kind kind = Kind::Ordinary;
    std::int32_t code = 0; // HRESULT or status

    bool operator==(Way const&) const = default;
};

// A call that goes another way, counted from 0.
struct WayAt
{
    std::size_t call;
    Way way;
};

// What follows from it may come at the same time as other things.
bool IsConcurrent(Way const& way);

// In the ID of a play: "now-80004005", "null", "helper-closes".
std::string NameOf(Way const& way);

// Whether a call can go that way.
bool Applies(Way const& way, std::wstring_view call);

std::optional<Way> WayOf(std::string_view text);

} // namespace explore::faults
