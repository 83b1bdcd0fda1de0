#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sim
{

// How a call of the platform is made to fail.
enum class FaultKind : std::uint32_t
{
    Now = 0,        // the call itself fails, with the HRESULT
    Completion = 1, // its asynchronous operation fails with the HRESULT
    Never = 2,      // its asynchronous operation never completes
    Null = 3,       // it succeeds and returns null
    Delay = 4,      // its asynchronous operation completes as usual, that many milliseconds later
    Cancelled = 5,  // its asynchronous operation completes as cancelled
    Status = 6,     // its asynchronous operation completes with the status, and does nothing
    Unheard = 7,    // its asynchronous operation goes on, but setting its completion handler fails with the HRESULT
    Ended = 8,      // its asynchronous operation has completed as usual by the time the call returns
    Held = 9,       // its asynchronous operation completes as usual, once the faults are cleared
    Last = Held
};

// By FaultKind, as ParseFault reads them.
std::vector<std::wstring_view> FaultKindNames();

struct Fault
{
    // The number of calls that fail when none is given: all.
    static constexpr std::uint32_t always = UINT32_MAX;

    std::wstring call; // <class> for its activation factory, <class>.<member>
    FaultKind kind = FaultKind::Now;
    std::uint32_t value = 0; // Now, Completion, Unheard: the HRESULT; Delay: milliseconds; Status: the status
    std::uint32_t times = always;
    std::uint32_t after = 0; // how many calls succeed before the first one fails

    std::int32_t Result() const noexcept { return static_cast<std::int32_t>(value); }

    // call=… kind=… result=…, for the journal.
    std::vector<std::wstring> Details() const;

    // The words that ParseFault reads.
    std::vector<std::wstring> Words() const;
};

// CALL now|completion|unheard RESULT [TIMES] [after CALLS] · CALL never|null|cancelled|ended … · CALL delay MS … · CALL
// status NUMBER … · CALL held [after CALLS]. Throws Error for an unknown call, with the list of the known ones, or a
// kind that the call does not support.
Fault ParseFault(std::vector<std::wstring> const& words);

} // namespace sim
