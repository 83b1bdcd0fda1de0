#pragma once
#include <string>
#include <windows.h>

namespace explore
{

// A clock that stands still unless it is told to go on. Local time is UTC.
class Clock
{
  public:
    FILETIME Utc() const noexcept;
    SYSTEMTIME Local() const noexcept { return LocalAt(m_seconds); }
    static SYSTEMTIME LocalAt(std::uint64_t seconds) noexcept; // since 1970
    void Advance(unsigned seconds) noexcept { m_seconds += seconds; }

    // 09:30:12 on 5 January 2024.
    static constexpr std::uint64_t start = 1'704'447'012; // seconds since 1970
    std::uint64_t Seconds() const noexcept { return m_seconds; }

  private:
    std::uint64_t m_seconds = start;
};

// What the system's formatters make of the pictures that the log uses; empty for another picture.
std::wstring FormattedDate(SYSTEMTIME const& time, std::wstring_view picture);
std::wstring FormattedTime(SYSTEMTIME const& time, std::wstring_view picture);

} // namespace explore
