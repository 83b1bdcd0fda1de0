#pragma once
#include "doctor/stories/Remark.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace doctor
{

// Each watch is told all lines of a log, one after the other, and remarks on one thing.

// Two registrations of one task without a removal between them. That lasts until a removal, whatever works meanwhile.
class RegistrationWatch
{
  public:
    void Add(LogPlace const& place, TakeRemark const& take);
    void End(TakeRemark const& take);

  private:
    struct Task
    {
        std::optional<LogPlace> registered{};
        std::optional<std::pair<LogPlace, LogPlace>> twice{};
    };

    Task m_push;
    Task m_timer;
};

// More than a day, with an hour of tolerance, since the timer was registered or came last. A machine that was off gets
// it soon after its start.
class TimerWatch
{
  public:
    static constexpr std::chrono::hours mostWait{25};
    static constexpr std::chrono::minutes mostLate{15};

    void Add(LogPlace const& place, TakeRemark const& take);

    // `asOf` as for StoryTracker::End.
    void End(std::optional<LogTime> asOf, TakeRemark const& take);

  private:
    void Tell(TakeRemark const& take);

    std::optional<LogPlace> m_armed;
    std::optional<LogPlace> m_late; // the first line after the wait
    LogPlace m_last;
};

// A day without a push behind another channel URI, where pushes had come before.
class PushWatch
{
  public:
    static constexpr std::chrono::hours patience{24};

    void Add(LogPlace const& place, std::string_view message);
    void End(TakeRemark const& take);

  private:
    std::size_t m_uri = 0; // its hash; 0: none yet
    bool m_hadPush = false;
    std::optional<LogPlace> m_changed; // since then no push
    LogPlace m_last;
};

// A connection that is closed while a channel or a registration is waited for.
class ClosingWatch
{
  public:
    void Add(LogPlace const& place, TakeRemark const& take);

  private:
    std::vector<LogPlace> m_waiting; // requests not yet answered, the oldest first
};

// A connection that is opened while another one is.
class ConnectionWatch
{
  public:
    void Add(LogPlace const& place, TakeRemark const& take);

  private:
    std::optional<LogPlace> m_open;
};

class ClockWatch
{
  public:
    void Add(LogPlace const& place, TakeRemark const& take);

  private:
    std::optional<LogPlace> m_latest;
};

// Copies: which were set aside or rotated, and which are missing.
class CopyWatch
{
  public:
    // The next file begins.
    void Begin(std::filesystem::path const& file);

    void Add(LogPlace const& place, TakeRemark const& take);

  private:
    bool HasCopyOf(LogTime time) const;

    std::vector<LogTime> m_copied; // when the files before were made copies, by their names
    std::optional<LogTime> m_own;  // the same of this one
    std::optional<LogPlace> m_last;
    bool m_isFirstLine = true;
};

// "KZEB 2024-1-5 09-30-12.log": the local time. nullopt for other names.
std::optional<LogTime> TimeOfCopy(std::filesystem::path const& file);

} // namespace doctor
