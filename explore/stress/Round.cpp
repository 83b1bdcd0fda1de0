#include "explore/stress/Round.h"

#include "explore/stress/LogTexts.h"
#include "explore/stress/StressLine.h"
#include "logging/BuildLogHeader.h"
#include "logging/DatedName.h"
#include "logging/RotationLimit.h"
#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Process.h"
#include "simulator/base/Text.h"

#include <algorithm>
#include <cstdio>
#include <winternl.h>

// Of the whole process; the documented functions know threads only.
extern "C" NTSTATUS NTAPI NtSuspendProcess(HANDLE process);
extern "C" NTSTATUS NTAPI NtResumeProcess(HANDLE process);

namespace explore::stress
{

namespace
{

using std::chrono::milliseconds;

constexpr DWORD killedCode = 99;
constexpr auto limit = zant::RotationLimit(zant::LogLevel::Info);

std::wstring NewName()
{
    static unsigned count = 0;
    return L"stress-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++count);
}

sim::Handle JobThatEndsItsProcesses()
{
    sim::Handle job(CreateJobObjectW(nullptr, nullptr));
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(job.Get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
    return job;
}

DWORD ExitCode(HANDLE process)
{
    DWORD code = 0;
    GetExitCodeProcess(process, &code);
    return code;
}

bool EndsWithinLine(std::wstring const& log)
{
    constexpr std::uint64_t oneCharacter = 2;
    auto const size = sim::FileSize(log).value_or(0);
    return size > oneCharacter && !sim::ReadBytes(log, size - oneCharacter).ends_with(std::string_view("\n\0", 2));
}

} // namespace

Round::Round(Share share, std::uint64_t seed)
    : m_share(share), m_random(seed), m_name(NewName()), m_folder(FolderOfRun(m_name)), m_log(LogOfRun(m_name)),
      m_job(JobThatEndsItsProcesses()), m_timer(CreateWaitableTimerW(nullptr, TRUE, nullptr)), m_notes(m_name),
      m_places(share.places)
{
    sim::Remove(m_folder); // of an earlier process with the same id
    sim::MakeFolder(m_folder);
    sim::WriteBytes(m_folder + L"\\pvq.trace", "keeplogs");
}

Round::~Round()
{
    for (auto& place : m_places)
    {
        if (place.process)
        {
            Kill(place);
        }
    }
}

RoundFigures Round::Play()
{
    constexpr milliseconds firstKill{200};
    constexpr std::chrono::seconds betweenKills{1};
    Fill();
    StartAll();
    auto const begin = Clock::now();
    m_nextProgress = begin;
    auto nextKill = begin + firstKill;
    while (!HasEnded())
    {
        WaitUntil(nextKill);
        nextKill = Clock::now() + betweenKills;
        TellProgress();
        Disturb();
    }
    m_figures.seconds = std::chrono::duration<double>(Clock::now() - begin).count();
    Sum();
    return m_figures;
}

// Nearly to its limit, so that the first kill finds a log that is due.
void Round::Fill()
{
    constexpr std::uint64_t room = 120'000;
    auto const line = dateLength + BehindDate(1'000, MessageOf({filler, 1'000})).size() + 2;
    Place place;
    SetEvent(m_notes.Go());
    Launch(place, (limit - room) / (line * sizeof(wchar_t)));
    WaitForSingleObject(place.process.Get(), INFINITE);
    TakeEnded(place);
    ResetEvent(m_notes.Go());
    ResetEvent(m_notes.Ready());
}

void Round::StartAll()
{
    for (auto& place : m_places)
    {
        Launch(place, m_share.lines);
        AwaitReady(place, INFINITE);
    }
    SetEvent(m_notes.Go());
}

void Round::Launch(Place& place, std::uint64_t last)
{
    place.life = static_cast<std::uint32_t>(m_lives.size());
    if (place.life >= Notes::most)
    {
        throw sim::Error(L"a round takes too many processes");
    }
    m_lives.emplace_back();
    auto& note = m_notes[place.life];
    note.first = place.acknowledged + 1;
    note.last = last;
    note.begun = note.acknowledged = place.acknowledged;
    place.process = sim::StartProcess(sim::ProgramPath(), {L"--writer", m_name, std::to_wstring(place.life)});
    AssignProcessToJobObject(m_job.Get(), place.process.Get());
}

DWORD Round::AwaitReady(Place const& place, DWORD milliseconds) const
{
    HANDLE const either[] = {m_notes.Ready(), place.process.Get()};
    return WaitForMultipleObjects(2, either, FALSE, milliseconds);
}

// Now and then one is killed while it opens the log: it may be rotating.
void Round::StartAgain(Place& place)
{
    constexpr std::uint64_t longest = 150; // milliseconds
    auto const isKilled = m_random.Below(4) == 0;
    auto const time = static_cast<DWORD>(m_random.Below(longest));
    ResetEvent(m_notes.Ready());
    Launch(place, m_share.lines);
    if (AwaitReady(place, isKilled ? time : INFINITE) == WAIT_TIMEOUT)
    {
        ++m_figures.killsWhileOpening;
        Kill(place);
    }
}

// Until that time or until all have ended.
void Round::WaitUntil(Clock::time_point time)
{
    using Ticks = std::chrono::duration<LONGLONG, std::ratio<1, 10'000'000>>;
    while (!HasEnded())
    {
        LARGE_INTEGER due;
        due.QuadPart = std::min<LONGLONG>(-1, std::chrono::duration_cast<Ticks>(Clock::now() - time).count());
        SetWaitableTimer(m_timer.Get(), &due, 0, nullptr, nullptr, FALSE);
        std::vector<HANDLE> handles{m_timer.Get()};
        std::vector<Place*> running{nullptr};
        for (auto& place : m_places)
        {
            if (place.process)
            {
                handles.push_back(place.process.Get());
                running.push_back(&place);
            }
        }
        auto const which = WaitForMultipleObjects(static_cast<DWORD>(handles.size()), handles.data(), FALSE, INFINITE);
        if (which == WAIT_OBJECT_0)
        {
            return;
        }
        TakeEnded(*running.at(which - WAIT_OBJECT_0));
    }
}

void Round::TakeEnded(Place& place)
{
    auto const& note = m_notes[place.life];
    if (note.acknowledged != note.last && !note.isSilent)
    {
        m_figures.ended.Add("process " + std::to_string(place.life) + " ended with code " +
                            std::to_string(ExitCode(place.process.Get())) + " after its line " +
                            std::to_string(note.acknowledged));
    }
    place.process = {};
    place.isDone = true;
}

void Round::Kill(Place& place)
{
    // One that copies the log has its mutex: while it stands still, the log stays as it was copied.
    NtSuspendProcess(place.process.Get());
    auto const size = sim::FileSize(m_log).value_or(0);
    TerminateProcess(place.process.Get(), killedCode);
    WaitForSingleObject(place.process.Get(), INFINITE);
    if (ExitCode(place.process.Get()) != killedCode) // it had ended before
    {
        TakeEnded(place);
        return;
    }
    ++m_figures.kills;
    m_lives[place.life].wasKilled = true;
    m_lives[place.life].logSize = size;
    place.process = {};
    place.acknowledged = m_notes[place.life].acknowledged;
    place.isDone = place.acknowledged == m_notes[place.life].last;
}

// Kills one, often while one looks at the log's size, and starts one for each that is missing.
void Round::Disturb()
{
    auto* victim = m_random.Below(2) == 0 ? LetOneCheck() : AnyRunning();
    if (victim != nullptr && victim->process)
    {
        StopWithinLine(*victim);
        Kill(*victim);
    }
    for (auto& place : m_places)
    {
        if (!place.process && !place.isDone)
        {
            AwaitNewName();
            StartAgain(place);
        }
    }
}

// Between two calls of one line, if it is met there: a moment that kills by chance hardly ever find.
void Round::StopWithinLine(Place const& place)
{
    constexpr int tries = 100;
    for (int number = 0; number < tries; ++number)
    {
        NtSuspendProcess(place.process.Get());
        if (EndsWithinLine(m_log))
        {
            ++m_figures.killsWithinLine;
            return;
        }
        NtResumeProcess(place.process.Get());
    }
}

// The one to be killed: that one or any other, a moment later.
Round::Place* Round::LetOneCheck()
{
    constexpr std::uint64_t longest = 100;
    auto const delay = milliseconds(m_random.Below(longest));
    auto const isItself = m_random.Below(2) == 0;
    AwaitNewName();
    auto* const checks = AnyRunning();
    if (checks != nullptr)
    {
        m_notes[checks->life].shallCheck = true;
    }
    WaitUntil(Clock::now() + delay);
    return isItself ? checks : AnyRunning();
}

// A second copy of the same second would replace the first one, as the rules have it.
void Round::AwaitNewName()
{
    for (auto now = zant::LocalNow();
         !HasEnded() && sim::FileSize(m_log).value_or(0) >= limit / 2 && sim::FileExists(zant::DatedPath(m_log, now));
         now = zant::LocalNow())
    {
        WaitUntil(Clock::now() + milliseconds(1'000 - now.wMilliseconds));
    }
}

Round::Place* Round::AnyRunning()
{
    std::vector<Place*> running;
    for (auto& place : m_places)
    {
        if (place.process)
        {
            running.push_back(&place);
        }
    }
    return running.empty() ? nullptr : running[m_random.Below(running.size())];
}

bool Round::HasEnded() const
{
    return std::ranges::all_of(m_places, &Place::isDone);
}

void Round::Sum()
{
    m_figures.lines = 0;
    m_figures.slowest = 0;
    for (std::uint32_t life = filler + 1; life < m_lives.size(); ++life)
    {
        m_figures.lines += m_notes[life].acknowledged - (m_notes[life].first - 1);
        m_figures.slowest = std::max<std::uint64_t>(m_figures.slowest, m_notes[life].slowest);
    }
}

void Round::TellProgress()
{
    constexpr std::chrono::seconds between{2};
    if (Clock::now() < m_nextProgress)
    {
        return;
    }
    m_nextProgress += between;
    Sum();
    std::printf("  %llu of %llu lines, %u kills\n", static_cast<unsigned long long>(m_figures.lines),
                static_cast<unsigned long long>(m_share.places * m_share.lines), m_figures.kills);
    static_cast<void>(std::fflush(stdout));
}

StressRecord Round::Record() const
{
    StressRecord record{m_lives, {}, ReadLogTexts(m_folder, m_log)};
    for (std::uint32_t number = 0; auto& life : record.lives)
    {
        auto const& note = m_notes[number++];
        life.thread = note.thread;
        life.first = note.first;
        life.begun = note.begun;
        life.acknowledged = note.acknowledged;
        life.wasChecking = note.isChecking;
        life.isSilent = note.isSilent;
    }
    zant::BuildLogHeader().ForEachLine([&](std::wstring const& line) { record.header.push_back(sim::ToUtf8(line)); });
    return record;
}

void Round::Remove() const
{
    sim::Remove(m_folder);
}

} // namespace explore::stress
