#pragma once
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sim
{

// What the simulator's processes say to each other: a verb and its arguments.
using Message = std::vector<std::wstring>;

Message MakeMessage(std::wstring verb, std::vector<std::wstring> const& arguments);

// As bytes: how many bytes follow, then how many texts, then each text's length in UTF-16 units and the units. All
// numbers are 32 bits, little-endian.
std::string Encode(Message const& message);

// The largest message, in bytes behind the first number: far above anything that is sent (an app-service message of a
// megabyte or so).
constexpr std::size_t largestMessage = 64u << 20;

// The longest text, in code units, that leaves room for the other words of any message that carries it.
constexpr std::size_t longestText = (largestMessage - 65'536) / sizeof(wchar_t);

bool Fits(Message const& message);

// Puts messages together again from a stream of bytes that arrives in pieces of any size.
class MessageDecoder
{
  public:
    void Add(std::string_view bytes);

    // The next whole message, if there is one. Throws Error when the bytes are none that Encode makes; the stream is of
    // no further use then.
    std::optional<Message> Next();

  private:
    std::string m_bytes;
    std::size_t m_start = 0; // what lies before it has been taken
};

} // namespace sim
