#pragma once
#include <cstdint>
#include <limits>
#include <string>

namespace zant
{

// Milliseconds since 1970, UTC. Reads the system's precise time: on Windows the plain one advances in steps of up to 16
// ms, and under Wine it costs three times as much (the C runtime's time() sixty times), a fifth of the computation of a
// line.
std::uint64_t NowInMilliseconds() noexcept;

// The formatted date and time of a second, cached until another second is requested: consecutive lines mostly share
// theirs, and formatting costs several times the rest of a line. For one thread at a time.
class SecondText
{
  public:
    // `seconds` since 1970, UTC. Empty when the C runtime cannot convert the time to local time.
    std::wstring const& Of(std::int64_t seconds);

  private:
    std::int64_t m_second = std::numeric_limits<std::int64_t>::min();
    std::wstring m_text;
};

} // namespace zant
