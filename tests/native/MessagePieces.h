#pragma once
#include "logging/Redaction.h"

#include <span>

namespace test
{

// Messages made of what redaction looks for, of what nearly is that, and of anything else, as given bytes say: any
// bytes make a message, similar bytes similar ones.
class MessagePieces
{
  public:
    MessagePieces();

    // One piece for each byte.
    zant::Utf16String Message(std::span<std::uint8_t const> choices) const;

    // One unit for each two bytes.
    static zant::Utf16String Units(std::span<std::uint8_t const> bytes);

  private:
    std::vector<zant::Utf16String> m_pieces;
};

} // namespace test
