#pragma once
#include "doctor/verdict/ReportBuilder.h"

#include <cmath>
#include <filesystem>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace test
{

using Texts = std::vector<std::string>;

// Seconds.
inline constexpr double hour = 3600;
inline constexpr double day = 24 * hour;

inline constexpr auto storyBegin = std::chrono::local_days(std::chrono::year(2024) / 1 / 5) + std::chrono::hours(9);

// Times of a log in seconds behind storyBegin.
inline doctor::LogTime At(double seconds)
{
    return storyBegin + std::chrono::milliseconds(std::llround(seconds * 1000));
}

// A log as the app writes it, line by line, and the report on it.
class StoryLog
{
  public:
    explicit StoryLog(std::filesystem::path const& file = L"KZEB.log") { Begin(file); }

    // The next file begins.
    void Begin(std::filesystem::path const& file)
    {
        m_builder.Begin(file);
        m_number = 0;
    }

    // Lines of a thread, with 10 ms from one to the next.
    void Write(double seconds, std::uint32_t thread, std::initializer_list<doctor::Line> lines)
    {
        for (auto const line : lines)
        {
            Write(seconds, thread,
                  std::string(doctor::MessageOf(line)) + (line == doctor::Line::ChannelUri ? uri : ""));
            seconds += 0.01;
        }
    }

    void Write(double seconds, std::uint32_t thread, std::string const& message, std::string_view product = "ZEB")
    {
        doctor::LogLine const line = {.time = At(seconds),
                                      .level = zant::LogLevel::Info,
                                      .product = product,
                                      .component = product,
                                      .category = "AppService",
                                      .origin = product,
                                      .thread = thread,
                                      .message = message};
        m_builder.Add({{.text = "a line", .number = ++m_number}, line});
    }

    void WriteOther(std::string_view text, bool isDamaged = false)
    {
        m_builder.Add({{.text = text, .number = ++m_number, .isDamaged = isDamaged}, {}});
    }

    // Nothing was written until then.
    doctor::Report ReportAsOf(double seconds) { return m_builder.End(At(seconds)); }

    // Nothing is ever written.
    doctor::Report FinalReport() { return m_builder.End({}); }

    std::string uri = "https://host/?token=AwYAAABcdefghijklmnop"; // in the next ChannelUri
    std::vector<doctor::Told> told;
    std::vector<std::pair<std::string, std::string>> remarks;

  private:
    doctor::ReportBuilder m_builder{[this](doctor::Told const& each) { told.push_back(each); }, {}};
    std::uint64_t m_number = 0;
};

// What follows are the lines of what the app does when all goes well. `seconds` is when the first of them is written.

inline void WriteConnected(StoryLog& log, double seconds, std::uint32_t thread = 1)
{
    using enum doctor::Line;
    log.Write(seconds, thread, {BackgroundActivated, ServiceActivation, Connecting, Connected});
}

inline void WriteStartForHelper(StoryLog& log, double seconds, std::uint32_t thread = 1)
{
    log.Write(seconds, thread, {doctor::Line::Started});
    WriteConnected(log, seconds + 0.1, thread);
}

// 0.9 s.
inline void WriteChannel(StoryLog& log, double seconds, std::uint32_t thread = 2, std::uint32_t other = 3)
{
    using enum doctor::Line;
    log.Write(seconds, thread, {RequestReceived, RequestDeferral, ChannelRequested});
    log.Write(seconds + 0.8, other, {ChannelReceived, ChannelUri, UriStoredForHelper, UriFound, ChannelDone});
    log.Write(seconds + 0.9, thread, {ChannelSent});
}

inline void WriteRegistrationBegin(StoryLog& log, double seconds, std::uint32_t thread = 2)
{
    using enum doctor::Line;
    log.Write(seconds, thread,
              {RequestReceived, RequestDeferral, RegistrationRequested, RegistrationWait, Registering});
}

inline void WriteRegistered(StoryLog& log, double seconds, std::uint32_t other = 3)
{
    using enum doctor::Line;
    log.Write(seconds, other,
              {ChannelReceived, ChannelUri, UriStoredForTasks, UriStored, PushTaskRegistered, TimerTaskRegistered});
}

// 1 s.
inline void WriteRegistration(StoryLog& log, double seconds, std::uint32_t thread = 2, std::uint32_t other = 3)
{
    using enum doctor::Line;
    WriteRegistrationBegin(log, seconds, thread);
    WriteRegistered(log, seconds + 0.8, other);
    log.Write(seconds + 0.9, thread, {RegistrationSignalled, UriPresent});
    log.Write(seconds + 0.91, other, {RegistrationDone});
    log.Write(seconds + 0.95, 4, {RegistrationSent, RegistrationCompleted});
}

inline void WriteClosed(StoryLog& log, double seconds, std::uint32_t thread = 5)
{
    log.Write(seconds, thread, {doctor::Line::ServiceCancelled});
    log.Write(seconds + 0.01, thread + 1, {doctor::Line::ServiceClosed});
}

// A push or the timer in a process that runs. 0.6 s.
inline void WriteWoken(StoryLog& log, double seconds, doctor::Line task, std::uint32_t thread = 1)
{
    using enum doctor::Line;
    auto const launch = task == PushTask ? LaunchForPush : LaunchForTimer;
    log.Write(seconds, thread, {BackgroundActivated, TaskDeferral, task, launch});
    log.Write(seconds + 0.5, 7, {LaunchDone, TaskCompleted});
}

// The report as texts: "channel: worked 1", "channel: failed: The ... (2) 5..9", "remark: The ... 1..3". The last two
// numbers are those of the lines.
Texts TextsOf(doctor::Report const& report);

// Those of remarks.
Texts RemarksOf(doctor::Report const& report);

// Those of failures.
Texts FailuresOf(doctor::Report const& report);

} // namespace test
