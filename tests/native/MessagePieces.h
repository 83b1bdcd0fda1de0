#pragma once
#include "logging/Redaction.h"

#include <span>

namespace test
{

// Messages made of what redaction searches for, near misses of it, and anything else, as given bytes select: any bytes
// make a message, and similar bytes similar ones.
class MessagePieces
{
  public:
    MessagePieces();

    // One piece for each byte.
    zant::Utf16String Message(std::span<std::uint8_t const> choices) const;

    // One code unit for each two bytes.
    static zant::Utf16String Units(std::span<std::uint8_t const> bytes);

  private:
    std::vector<zant::Utf16String> m_pieces;
};

} // namespace test
