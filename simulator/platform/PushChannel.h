#pragma once
#include "simulator/platform/Clock.h"
#include "simulator/platform/Journal.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sim
{

// The app's push channel, kept on the device. The URI stays the same until the channel expires or is revoked.
class PushChannel
{
  public:
    struct Channel
    {
        std::wstring uri;
        std::int64_t expiry; // of the clock
    };

    PushChannel(Journal& journal, Clock const& clock) : m_file({}, journal), m_journal(journal), m_clock(clock) {}

    // The channel that is kept in that file takes the place of this one.
    void Load(std::wstring file);

    // The live channel, or a new one. Throws Error when that cannot be kept.
    Channel const& Create();

    // Opens a new channel with a URI of the caller's choice, in place of the one that is there. Throws Error.
    void Replace(std::wstring uri);

    bool IsLive() const { return m_channel.has_value(); }

    // What the push service answers to a push to that URI: its status and what that means. None: it takes the push.
    struct Refusal
    {
        unsigned status;
        std::wstring_view meaning;
    };

    std::optional<Refusal> RefusalOf(std::wstring const& uri) const;

    // Ends the channel, if there is one.
    void Revoke();

    // Ends the channel if its time is over.
    void ClockAdvanced();

    // For people.
    std::wstring Status() const;

  private:
    Channel const& Open(std::wstring uri);
    void End(std::wstring uri, std::wstring event);
    void Keep(std::optional<Channel> const& channel) const;

    StateFile m_file;
    Journal& m_journal;
    Clock const& m_clock;
    std::optional<Channel> m_channel;
    std::vector<std::wstring> m_ended; // the URIs of those before
};

} // namespace sim
