#pragma once
#include "explore/harness/PlayId.h"

#include <cstdint>
#include <map>
#include <string>

namespace explore
{

// How often each of several texts was seen, and the first of the shortest plays that showed it.
class Tally
{
  public:
    struct Entry
    {
        std::uint64_t plays = 0;
        PlayId shortest = {};
    };

    void Count(std::string const& text, PlayId const& play)
    {
        auto& entry = m_entries[text];
        if (entry.plays++ == 0 || play.deviations.size() < entry.shortest.deviations.size())
        {
            entry.shortest = play;
        }
    }

    std::map<std::string, Entry> const& Entries() const noexcept { return m_entries; }

  private:
    std::map<std::string, Entry> m_entries;
};

} // namespace explore
