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

// Decides as the path says, and elsewhere in the ordinary way. A process of the path that is not ready does not go on.
class AlongPath
{
  public:
    explicit AlongPath(Path const& path) : m_path(path) {}

    // The decision of this turn.
    Decision Of(Turn const& turn);

    // Whether all of the path's deviations have been decided.
    bool IsAtEnd() const noexcept { return m_next == m_path.size(); }

  private:
    Path const& m_path;
    std::size_t m_next = 0;
};

} // namespace explore
