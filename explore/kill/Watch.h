#pragma once
#include "explore/kill/watch/Watched.h"
#include "simulator/base/Handle.h"

#include <optional>
#include <span>
#include <string>

namespace explore::kill
{

// The exploration's end of what it shares with the app's processes of one device.
class Watch
{
  public:
    // Throws sim::Error.
    explicit Watch(std::wstring const& name);
    Watch(Watch const&) = delete;
    Watch& operator=(Watch const&) = delete;
    ~Watch();

    // The next process is watched, and is ended at that call, counted from 0; at none without a number.
    void Await(std::optional<std::uint32_t> killAt) const;

    // Long waits are over at once from now on, or last as long as they should.
    void SetTimePasses(bool passes) const;

    // Whether the process that Await meant has come, and whether it was ended at its call.
    bool HasCome() const { return !m_watched->isAwaited; }
    bool IsKilled() const { return m_watched->isKilled; }

    // The calls that were made, in their order: not the one that ended the process.
    std::span<Call const> Calls() const;

    char const* NameOf(Call const& call) const { return m_watched->names[call.function]; }

  private:
    sim::Handle m_section;
    sim::Handle m_time;
    Watched* m_watched;
};

} // namespace explore::kill
