#include "explore/harness/Scheduler.h"

#include <algorithm>

namespace explore
{

void Scheduler::Add(std::function<void()> body)
{
    m_processes.push_back({std::make_unique<Fiber>(std::move(body))});
}

void Scheduler::Resume(ProcessNumber process)
{
    auto& [fiber, isReady, meetings] = m_processes[process];
    m_world.onSwitch(process);
    m_last = m_running = process;
    fiber->Run();
    if (fiber->HasReturned())
    {
        fiber.reset();
    }
}

unsigned Scheduler::Meetings() const
{
    auto fewest = m_meetings + 1;
    for (auto const& process : m_processes)
    {
        fewest = process.fiber ? std::min(fewest, process.meetings) : fewest;
    }
    return fewest;
}

void Scheduler::FindReady()
{
    m_ready.clear();
    for (ProcessNumber number = 0; auto const& process : m_processes)
    {
        if (process.fiber && (process.isReady == nullptr || (*process.isReady)()))
        {
            m_ready.push_back(number);
        }
        ++number;
    }
}

Decision Scheduler::Next(Decide const& decide)
{
    auto const goesOn = m_last && std::ranges::find(m_ready, *m_last) != m_ready.end();
    Turn const turn{m_step, m_ready, goesOn ? m_last : std::nullopt};
    if (m_meetings != 1)
    {
        return {Decision::Kind::Run, turn.Ordinary()};
    }
    ++m_step;
    auto const decision = decide(turn);
    if (decision.kind == Decision::Kind::Fault && m_world.onFault(decision.number, turn.Ordinary()))
    {
        m_processes[turn.Ordinary()].fiber.reset();
    }
    return decision;
}

Scheduler::End Scheduler::Run(Decide const& decide)
{
    auto const hasEnded = [](Process const& process) { return process.fiber == nullptr; };
    while (!std::ranges::all_of(m_processes, hasEnded))
    {
        if (auto const meetings = Meetings(); meetings > m_meetings)
        {
            m_world.onMeeting(m_meetings = meetings);
            m_last.reset();
        }
        FindReady();
        if (m_ready.empty())
        {
            if (!m_world.onIdle())
            {
                return End::Stuck;
            }
            continue;
        }
        auto const decision = Next(decide);
        if (decision.kind == Decision::Kind::LeaveOff)
        {
            return End::LeftOff;
        }
        if (decision.kind == Decision::Kind::Run)
        {
            Resume(decision.number);
        }
    }
    if (m_meetings < 2) // none was left to meet
    {
        m_world.onMeeting(m_meetings = 2);
    }
    return End::All;
}

void Scheduler::Await(std::function<bool()> const& isReady)
{
    auto& process = m_processes[m_running];
    process.isReady = isReady ? &isReady : nullptr;
    Fiber::Pause();
    process.isReady = nullptr;
}

void Scheduler::Meet()
{
    auto const awaited = ++m_processes[m_running].meetings;
    Await([this, awaited] { return m_meetings >= awaited; });
}

} // namespace explore
