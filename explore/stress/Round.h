#pragma once
#include "explore/harness/Random.h"
#include "explore/stress/Notes.h"
#include "explore/stress/StressCount.h"

#include <chrono>
#include <string>
#include <vector>

namespace explore::stress
{

struct Share
{
    unsigned places;     // processes at a time
    std::uint64_t lines; // of each place, however many processes it takes
};

struct RoundFigures
{
    double seconds = 0;
    std::uint64_t lines = 0;   // acknowledged
    std::uint64_t slowest = 0; // the longest call, in microseconds
    unsigned kills = 0;
    unsigned killsWithinLine = 0;   // of these
    unsigned killsWhileOpening = 0; // of these
    Found ended = {};               // processes that ended by themselves, before their last line
};

// Processes that write into one log at the same time, until each place has written its lines. Every second one of them
// is killed, and another one started in its place.
class Round
{
  public:
    // seed: who is killed, and when within the second.
    Round(Share share, std::uint64_t seed);
    Round(Round const&) = delete;
    Round& operator=(Round const&) = delete;
    ~Round(); // ends its processes

    RoundFigures Play();

    // After the play: the processes, and what they left.
    StressRecord Record() const;

    std::wstring const& Folder() const noexcept { return m_folder; }
    void Remove() const;

  private:
    using Clock = std::chrono::steady_clock;

    struct Place
    {
        sim::Handle process = {}; // none while nobody writes there
        std::uint32_t life = 0;
        std::uint64_t acknowledged = 0; // by those before
        bool isDone = false;
    };

    void Launch(Place& place, std::uint64_t last);
    void Fill();
    void StartAll();
    void StartAgain(Place& place);
    DWORD AwaitReady(Place const& place, DWORD milliseconds) const;
    void WaitUntil(Clock::time_point time);
    void TakeEnded(Place& place);
    void Kill(Place& place);
    void StopWithinLine(Place const& place);
    void Disturb();
    Place* LetOneCheck();
    void AwaitNewName();
    Place* AnyRunning();
    bool HasEnded() const;
    void TellProgress();
    void Sum();

    Share m_share;
    Random m_random;
    std::wstring m_name;
    std::wstring m_folder;
    std::wstring m_log;
    sim::Handle m_job; // ends the processes with this one
    sim::Handle m_timer;
    Notes m_notes;
    std::vector<Life> m_lives;
    std::vector<Place> m_places;
    RoundFigures m_figures;
    Clock::time_point m_nextProgress = {};
};

} // namespace explore::stress
