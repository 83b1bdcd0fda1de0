#pragma once
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace sim
{

// A message on a stream of bytes: its size in bytes (32 bits, little-endian), then the bytes.

// In bytes; far above any message in use (an app-service message has a megabyte or so).
constexpr std::size_t largestMessage = 64u << 20;

// The largest value set, in bytes: it leaves room for the other fields of a message.
constexpr std::size_t largestSet = largestMessage - 65'536;

std::string Framed(std::string_view message);

// Restores the messages of a stream that arrives in pieces of any size.
class FrameReader
{
  public:
    void Add(std::string_view bytes);

    // The next complete message, if there is one; valid until the next Add. Throws Error when its size is too large;
    // the rest of the stream cannot be read then.
    std::optional<std::string_view> Next();

  private:
    std::string m_bytes;
    std::size_t m_start = 0; // what lies before it has been taken
};

} // namespace sim
