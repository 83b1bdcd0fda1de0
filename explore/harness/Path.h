#pragma once
#include "explore/harness/PlayId.h"
#include "explore/harness/Turn.h"

namespace explore
{

// The deviations of a play as the scheduler takes them.
struct Step
{
    std::uint32_t step;
    Decision decision;

    bool operator==(Step const&) const = default;
};

using Path = std::vector<Step>;

// The processes are called A, B and so on.
PlayId PlayIdOf(std::string const& story, Path const& path, std::vector<std::string> const& faults);

// Nothing where the play has a deviation that is neither a process nor one of the faults.
std::optional<Path> PathOf(PlayId const& play, std::vector<std::string> const& faults);

// Decides as the path says, and elsewhere in the ordinary way. What cannot be goes the ordinary way, too, and is noted.
class AlongPath
{
  public:
    explicit AlongPath(Path const& path) : m_path(path) {}

    // The decision of this turn.
    Decision Of(Turn const& turn);

    // Whether all of the path's deviations have been decided.
    bool IsAtEnd() const noexcept { return m_next == m_path.size(); }

    // After the play: why its first deviation that could not be could not; empty where all could.
    std::string Refusal(std::vector<std::string> const& faults) const;

  private:
    struct NotReady
    {
        Step step;
        std::vector<ProcessNumber> ready;
    };

    Path const& m_path;
    std::size_t m_next = 0;
    std::size_t m_steps = 0; // of the play so far
    std::optional<NotReady> m_notReady;
};

} // namespace explore
