#pragma once
#include <cstdint>
#include <windows.h>

namespace zant
{

// An event by which one thread notifies another. It has no name: only holders of the record can reach it.
struct ZANT_Event_t
{
    HANDLE handle; // null until created
};

// Callers in other modules compare with these numbers.
enum class EventWaitResult : std::int32_t
{
    Signalled = 0,
    TimedOut = 1,
    Failed = 2 // any other outcome of the wait, and a null record
};

// Creates a record, not signalled. Null when the system cannot create the event (logged). Never freed, on purpose: the
// signal may come long after the wait has ended. It is small, and lives until the process ends.
ZANT_Event_t* CreateEvnt() noexcept;

// Creates the event of a record. Returns 0, or -1 on failure (logged). record: not null.
std::int32_t CreateEvntIntl(ZANT_Event_t* record) noexcept;

// Signals the event, which stays signalled until a wait takes the signal. Any thread. A null record is logged and
// ignored.
void SetEvnt(ZANT_Event_t const* record) noexcept;

// Blocks the calling thread. Leaves the event not signalled, whatever the result. A null record is logged and fails at
// once.
EventWaitResult WaitforEvent(ZANT_Event_t const* record, std::uint32_t timeoutMilliseconds) noexcept;

} // namespace zant
