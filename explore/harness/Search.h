#pragma once
#include "explore/harness/Path.h"
#include "explore/harness/Random.h"

#include <unordered_set>

namespace explore
{

// What a search plays.
struct Playable
{
    std::uint8_t faults; // how many there are
    // Plays once. False: the search is to end.
    std::function<bool(Path const&, Decide const&)> play;
    // A hash of all that what follows depends on, as far as it is not the scheduler's.
    std::function<std::uint64_t()> state;
};

struct Limits
{
    std::uint8_t preemptions; // switches away from a process that could have gone on
    std::uint8_t faults;
};

// Plays every order of the processes' calls within the limits, those with few deviations first. A play that comes to a
// state from which another one continues with the same limits is left off. (Few preemptions show nearly all errors:
// Musuvathi and Qadeer, 2007.)
class EveryOrder
{
  public:
    explicit EveryOrder(Playable const& playable) : m_playable(playable) {}

    // False: ended early.
    bool Play(Limits limits);

    std::size_t States() const noexcept { return m_seen.size(); }

  private:
    struct Node
    {
        Path path;
        Limits left;
    };

    Decision Decided(Turn const& turn, Node const& node);
    void AddAlternatives(Turn const& turn, Node const& node);

    Playable const& m_playable;
    std::unordered_set<std::uint64_t> m_seen;
    std::vector<Node> m_next;
};

// One play by chance: processes have random priorities, and at `depth - 1` random steps the one that would go on falls
// behind all others, which shows an error that needs so many orderings with a chance that does not depend on the rest.
// (Burckhardt, Kothari, Musuvathi and Nagarakatti, 2010.) At most two faults are injected. `steps` is the length of a
// play. Returns false where the search is to end.
bool PlayByChance(Playable const& playable, Random& random, unsigned depth, std::uint32_t steps);

} // namespace explore
