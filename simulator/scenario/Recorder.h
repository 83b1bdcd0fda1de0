#pragma once
#include "simulator/scenario/Observer.h"
#include "simulator/scenario/Player.h"

#include <string>
#include <vector>

namespace sim
{

// Makes a scenario of what happens: steps, each followed by its results as expect steps. What differs from run to run
// (process ids, paths, the channel's URI) is left out, or replaced by its name in scenarios.
class Recorder
{
  public:
    // Takes all that the observer keeps. False when that is nothing.
    bool Take(Observer& observer);

    // Adds what was taken to the scenario.
    void AddTaken(Player::Names const& names);

    void AddStep(std::wstring const& step);

    // What the doctor finds in the end.
    void AddVerdict(std::wstring const& verdict) { m_text += L"expect verdict " + verdict + L"\n"; }

    // The scenario so far.
    std::wstring const& Text() const noexcept { return m_text; }

  private:
    void AddLog(Player::Names const& names);
    void AddExpectation(Words words, Player::Names const& names);

    std::wstring m_text;
    std::vector<Event> m_events;
    std::vector<std::string> m_log; // lines as in the file
    std::vector<Helpers::Output> m_helperOutput;
};

} // namespace sim
