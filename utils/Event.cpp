#include "utils/Event.h"

#include "utils/UtilsLog.h"

#include <new>

namespace zant
{

namespace
{

constexpr wchar_t category[] = L"ZANTEvents";

EventWaitResult ResultOf(DWORD outcome) noexcept
{
    switch (outcome)
    {
    case WAIT_OBJECT_0:
        return EventWaitResult::Signalled;
    case WAIT_TIMEOUT:
        return EventWaitResult::TimedOut;
    default:
        return EventWaitResult::Failed;
    }
}

} // namespace

ZANT_Event_t* CreateEvnt() noexcept
{
    auto* const record = new (std::nothrow) ZANT_Event_t{nullptr};
    if (!record || CreateEvntIntl(record) != 0)
    {
        // The record without an event leaks: a few bytes, when the system is out of handles.
        // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks)
        LogFromUtils(LogLevel::Warn, category, L"Failed in CreateEvnt");
        return nullptr;
    }
    ResetEvent(record->handle);
    return record;
}

std::int32_t CreateEvntIntl(ZANT_Event_t* record) noexcept
{
    constexpr BOOL manualReset = FALSE;
    constexpr BOOL signalled = FALSE;
    record->handle = CreateEventW(nullptr, manualReset, signalled, nullptr);
    if (!record->handle)
    {
        LogFromUtils(LogLevel::Error, L"ZANTEventsIntl", L"Failed to create Event");
        return -1;
    }
    return 0;
}

void SetEvnt(ZANT_Event_t const* record) noexcept
{
    if (!record)
    {
        LogFromUtils(LogLevel::Error, category, L"NULL ZANT_Event_t object passed in SetEvnt ");
        return;
    }
    SetEvent(record->handle);
}

EventWaitResult WaitforEvent(ZANT_Event_t const* record, std::uint32_t timeoutMilliseconds) noexcept
{
    if (!record)
    {
        LogFromUtils(LogLevel::Error, category, L"NULL ZANT_Event_t object passed in WaitforEvent ");
        return EventWaitResult::Failed;
    }
    auto const result = ResultOf(WaitForSingleObject(record->handle, timeoutMilliseconds));
    ResetEvent(record->handle);
    return result;
}

} // namespace zant
