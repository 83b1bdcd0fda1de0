#pragma once
#include "explore/harness/Tally.h"

#include <chrono>
#include <string>
#include <unordered_set>
#include <vector>

namespace explore
{

// What an exploration says of itself: its progress, what it saw, what it found and how to play that again. On standard
// output, since cmake/wine-run holds standard error back until the program's end.
class Report
{
  public:
    // `subject` as in ./dev explore SUBJECT.
    Report(std::string subject, std::uint64_t seed);

    // So many plays come now, for the lines of progress; 0 where that is not known.
    void Expect(std::uint64_t plays) { m_expected = plays == 0 ? 0 : m_plays + plays; }

    // Counts a whole play by its outcome. Prints a line of progress when one is due.
    void Played(PlayId const& play, std::string const& outcome);

    // Counts a play that came to a state from which another one continues.
    void LeftOff() noexcept { ++m_leftOff; }

    // Counts a state by its hash; false when it was seen before.
    bool Saw(std::uint64_t state) { return m_states.insert(state).second; }

    // Counts a loss that the rules prescribe.
    void Lost(std::string const& rule, PlayId const& play) { m_losses.Count(rule, play); }

    // A deviation from the rules, of a kind. The first of its kind is printed at once.
    void Found(std::string const& kind, PlayId const& play, std::string const& what);
    bool HasFound(std::string const& kind) const { return m_found.Entries().contains(kind); }
    std::map<std::string, Tally::Entry> const& Findings() const noexcept { return m_found.Entries(); }

    std::chrono::steady_clock::duration Elapsed() const { return Clock::now() - m_started; }

    // Prints the tables and the closing line, without which an exploration does not count as run (cmake/wine-run). The
    // exit code: 1 when something was found.
    int Conclude() const;

  private:
    using Clock = std::chrono::steady_clock;

    std::string Figures() const;

    std::string m_subject;
    std::uint64_t m_seed;
    Clock::time_point m_started = Clock::now();
    Clock::time_point m_nextProgress;
    std::uint64_t m_plays = 0;
    std::uint64_t m_expected = 0;
    std::uint64_t m_leftOff = 0;
    std::unordered_set<std::uint64_t> m_states;
    Tally m_outcomes;
    Tally m_losses;
    Tally m_found;
};

} // namespace explore
