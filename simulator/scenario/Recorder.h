#pragma once
#include "simulator/scenario/Observer.h"
#include "simulator/scenario/Player.h"

#include <string>
#include <vector>

namespace sim
{

// Makes a scenario of what happens: steps, and behind each one what came of it as expect steps. What differs from one
// time to the next (process ids, paths, the channel's URI) is left out, or named as scenarios name it.
class Recorder
{
  public:
    // Takes all that the observer keeps. False when there is nothing.
    bool Take(Observer& observer);

    // Puts down what was taken.
    void AddTaken(Player::Names const& names);

    void AddStep(std::wstring const& step);

    // The scenario so far.
    std::wstring const& Text() const noexcept { return m_text; }

  private:
    void AddLog(Player::Names const& names);
    void AddExpectation(Words words, Player::Names const& names);

    std::wstring m_text;
    std::vector<Event> m_events;
    std::vector<LogLine> m_log;
    std::vector<Helpers::Said> m_said;
};

} // namespace sim
