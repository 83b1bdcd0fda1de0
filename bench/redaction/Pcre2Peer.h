#pragma once
#include "logging/Utf16.h"

#include <memory>

namespace bench
{

// The nearest that regular expressions come to the rules: PCRE2 for 16-bit units, compiled to machine code. One
// expression for a token, one for the elements of all keys, of which it masks every one and not the first alone.
class Pcre2Peer
{
  public:
    Pcre2Peer();
    Pcre2Peer(Pcre2Peer const&) = delete;
    Pcre2Peer& operator=(Pcre2Peer const&) = delete;
    ~Pcre2Peer();

    zant::Utf16View Redact(zant::Utf16View message);

  private:
    class Expression;

    std::unique_ptr<Expression> m_token;
    std::unique_ptr<Expression> m_element;
    zant::Utf16String m_changed;
};

} // namespace bench
