#pragma once
#include <cstdint>
#include <limits>
#include <string>

namespace zant
{

// Milliseconds since 1970, UTC. From the system's precise time: on Windows the plain one stands still for up to 16 ms,
// and under Wine it costs three times as much (the C runtime's time() sixty times), a fifth of what a line computes.
std::uint64_t NowInMilliseconds() noexcept;

// The text of a local second, kept until another second is asked for: most lines of a busy moment share theirs, and
// making it costs several times what the rest of a line does. For one thread at a time.
class SecondText
{
  public:
    // `seconds` since 1970, UTC. Empty for a moment that the C runtime has no local time for.
    std::wstring const& Of(std::int64_t seconds);

  private:
    std::int64_t m_second = std::numeric_limits<std::int64_t>::min();
    std::wstring m_text;
};

} // namespace zant
