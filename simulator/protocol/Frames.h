#pragma once
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace sim
{

// A message on a stream of bytes: how many bytes follow (32 bits, little-endian), then these.

// The largest one: far above anything that is sent (an app-service message of a megabyte or so).
constexpr std::size_t largestMessage = 64u << 20;

// The largest value set, in bytes, that leaves room for the other fields of any message that carries it.
constexpr std::size_t largestSet = largestMessage - 65'536;

std::string Framed(std::string_view message);

// Puts messages together again from a stream that arrives in pieces of any size.
class FrameReader
{
  public:
    void Add(std::string_view bytes);

    // The next whole message, if there is one; valid until the next Add. Throws Error when it is too large to be one;
    // the stream is of no further use then.
    std::optional<std::string_view> Next();

  private:
    std::string m_bytes;
    std::size_t m_start = 0; // what lies before it has been taken
};

} // namespace sim
