#include "simulator/services/Alarms.h"

#include "simulator/model/Error.h"
#include "simulator/model/Files.h"

#include <algorithm>

namespace sim
{

Alarms::Alarms(std::mutex& mutex) : m_mutex(mutex), m_timer(CreateThreadpoolTimer(OnTimer, this, nullptr))
{
    if (!m_timer)
    {
        throw Error(L"cannot make a timer: " + SystemMessage(GetLastError()));
    }
}

Alarms::~Alarms()
{
    SetThreadpoolTimer(m_timer, nullptr, 0, 0);
    WaitForThreadpoolTimerCallbacks(m_timer, TRUE);
    CloseThreadpoolTimer(m_timer);
}

Alarms::Id Alarms::Set(unsigned milliseconds, std::function<void()> function)
{
    m_alarms.emplace(++m_last, Alarm{GetTickCount64() + milliseconds, std::move(function)});
    Arm();
    return m_last;
}

void Alarms::Cancel(Id id)
{
    m_alarms.erase(id); // the timer may come for nothing
}

void Alarms::Run()
{
    std::lock_guard const lock(m_mutex);
    auto const now = GetTickCount64();
    for (;;)
    {
        // Looked for anew each time: the one before may have changed them.
        auto const next = Next();
        if (next == m_alarms.end() || next->second.due > now)
        {
            break;
        }
        auto const function = std::move(next->second.function);
        m_alarms.erase(next);
        function();
    }
    Arm();
}

// The earliest one.
std::map<Alarms::Id, Alarms::Alarm>::iterator Alarms::Next()
{
    return std::ranges::min_element(m_alarms, {}, [](auto const& alarm) { return alarm.second.due; });
}

void Alarms::Arm()
{
    auto const next = Next();
    if (next == m_alarms.end())
    {
        return;
    }
    auto const now = GetTickCount64();
    auto const wait = next->second.due > now ? next->second.due - now : 0;
    constexpr std::int64_t ticksPerMillisecond = 10'000;
    auto const due = -static_cast<std::int64_t>(wait) * ticksPerMillisecond; // negative: from now on
    FILETIME time{static_cast<DWORD>(due & 0xFFFFFFFF), static_cast<DWORD>(due >> 32)};
    SetThreadpoolTimer(m_timer, &time, 0, 0);
}

void Alarms::OnTimer(PTP_CALLBACK_INSTANCE, void* context, PTP_TIMER)
{
    static_cast<Alarms*>(context)->Run();
}

} // namespace sim
