#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sim
{

// How a call of the platform goes wrong on request.
enum class FaultKind : std::uint32_t
{
    Now = 0,        // the call itself fails, with the result code
    Completion = 1, // its asynchronous operation fails with the result code
    Never = 2,      // its asynchronous operation never ends
    Null = 3,       // it succeeds and hands out null
    Delay = 4,      // its asynchronous operation ends as it would have, that much later
    Cancelled = 5,  // its asynchronous operation ends as cancelled
    Status = 6,     // its asynchronous operation completes with the status, and does nothing
    Unheard = 7,    // its asynchronous operation goes on, and setting its completion handler fails with the result code
    Ended = 8,      // its asynchronous operation has ended as it would have when the call returns
    Last = Ended
};

// As ParseFault takes them, in their order.
std::vector<std::wstring_view> FaultKindNames();

struct Fault
{
    // How many calls it strikes when no count was given: all.
    static constexpr std::uint32_t always = UINT32_MAX;

    std::wstring call; // <class> for getting the class at all, <class>.<member>
    FaultKind kind = FaultKind::Now;
    std::uint32_t value =
        0; // Now, Completion, Unheard: the result code (negative as an HRESULT); Delay: milliseconds; Status
    std::uint32_t times = always;
    std::uint32_t after = 0; // how many calls go well before the first one is struck

    std::int32_t Result() const noexcept { return static_cast<std::int32_t>(value); }

    // call=… kind=… result=…, for the journal and for people.
    std::vector<std::wstring> Details() const;

    // The words that ParseFault takes.
    std::vector<std::wstring> Words() const;
};

// CALL now|completion|unheard RESULT [TIMES] [after CALLS] · CALL never|null|cancelled|ended … · CALL delay MS … · CALL
// status NUMBER … Throws Error for an unknown call, with the list of the known ones, or a kind that the call does not
// know.
Fault ParseFault(std::vector<std::wstring> const& words);

} // namespace sim
