#pragma once
#include <cstdint>
#include <windows.h>

namespace zant
{

// An event by which one thread tells another that it is done. It has no name: only who has the record can reach it.
struct ZANT_Event_t
{
    HANDLE handle; // null until created
};

// The numbers are what callers of other modules compare with.
enum class EventWaitResult : std::int32_t
{
    Signalled = 0,
    TimedOut = 1,
    Failed = 2 // any other outcome of the wait, and a null record
};

// A new record, not signalled; null when the system has no event to give (logged). Nobody frees it, on purpose: whoever
// signals it may come long after the one that waited has gone. It is small, and lives until the process ends.
ZANT_Event_t* CreateEvnt() noexcept;

// Makes the event of a record: 0, or -1 when the system gives none (logged). record: not null.
std::int32_t CreateEvntIntl(ZANT_Event_t* record) noexcept;

// Signals the event, which stays signalled until a wait takes it. Any thread. A null record is logged, nothing else.
void SetEvnt(ZANT_Event_t const* record) noexcept;

// Waits on the calling thread, which leaves the event not signalled, whatever came of it. A null record is logged and
// fails at once.
EventWaitResult WaitforEvent(ZANT_Event_t const* record, std::uint32_t timeoutMilliseconds) noexcept;

} // namespace zant
