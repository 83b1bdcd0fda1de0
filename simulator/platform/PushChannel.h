#pragma once
#include "simulator/platform/Clock.h"
#include "simulator/platform/Journal.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sim
{

// The app's push channel, saved on the device. The URI stays the same until the channel expires or is revoked.
class PushChannel
{
  public:
    struct Channel
    {
        std::wstring uri;
        std::int64_t expiry; // by the clock
    };

    PushChannel(Journal& journal, Clock const& clock) : m_file({}, journal), m_journal(journal), m_clock(clock) {}

    // Replaces the channel by the one in the file.
    void Load(std::wstring file);

    // Returns the open channel, or a new one. Throws Error when that cannot be saved.
    Channel const& Create();

    // Revokes the channel and opens a new one with the caller's URI. Throws Error.
    void Replace(std::wstring uri);

    // nullopt: none is open.
    std::optional<Channel> const& Current() const noexcept { return m_channel; }

    bool IsOpen() const { return m_channel.has_value(); }

    // The push service's refusal of a push to a URI: its HTTP status and what that means.
    struct Refusal
    {
        unsigned status;
        std::wstring_view meaning;
    };

    // nullopt: the service accepts the push.
    std::optional<Refusal> RefusalOf(std::wstring const& uri) const;

    // Ends the channel, if there is one.
    void Revoke();

    // Ends the channel if it has expired.
    void ClockAdvanced();

    // Display text.
    std::wstring Status() const;

  private:
    Channel const& Open(std::wstring uri);
    void End(std::wstring uri, std::wstring event);
    void Save(std::optional<Channel> const& channel) const;

    StateFile m_file;
    Journal& m_journal;
    Clock const& m_clock;
    std::optional<Channel> m_channel;
    std::vector<std::wstring> m_ended; // the URIs of earlier channels
};

} // namespace sim
