#pragma once
#include "explore/harness/Report.h"
#include "explore/harness/Search.h"
#include "explore/log/LogPlay.h"
#include "explore/log/Verdict.h"

#include <functional>
#include <string>

namespace explore
{

struct Replayed
{
    std::string refusal = {}; // why it cannot be played; empty: it can
    Verdict verdict = {};
};

// Told of each step before it is made.
using OnStep = std::function<void(LogPlay const&, Turn const&, Decision)>;

Replayed PlayAgain(Story const& story, PlayId const& id, OnStep const& onStep = nullptr);

// Explores one story. Ends with the first flaw that is by no rule.
class LogExploration
{
  public:
    LogExploration(Report& report, Story const& story, std::uint64_t seed)
        : m_report(report), m_story(story), m_random(seed)
    {
    }

    LogExploration(LogExploration const&) = delete;
    LogExploration& operator=(LogExploration const&) = delete;
    ~LogExploration() = default;

    void PlayEveryOrder(Limits limits);
    void PlayByChance();
    bool HasEnded() const noexcept { return m_hasEnded; }

  private:
    bool Play(Path const& path, Decide const& decide);
    void Tell(PlayId const& id, Verdict const& verdict);

    Report& m_report;
    Story const& m_story;
    Random m_random;
    LogPlay const* m_play = nullptr;
    std::uint32_t m_mostSteps = 0;
    bool m_hasEnded = false;
    Playable m_playable{static_cast<std::uint8_t>(FaultNames().size()),
                        [this](Path const& path, Decide const& decide) { return Play(path, decide); },
                        [this] { return m_play->System().StateHash(); }};
};

} // namespace explore
