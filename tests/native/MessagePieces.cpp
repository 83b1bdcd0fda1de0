#include "tests/native/MessagePieces.h"

namespace test
{

using namespace zant;

namespace
{

Utf16String UpperCase(Utf16String text)
{
    for (auto& unit : text)
    {
        unit = unit >= 'a' && unit <= 'z' ? static_cast<Utf16Unit>(unit - 'a' + 'A') : unit;
    }
    return text;
}

} // namespace

MessagePieces::MessagePieces()
{
    constexpr Utf16View others[] = {
        "eyJ"_utf16,      ".eyJ"_utf16,
        "ey"_utf16,       "J"_utf16,
        "."_utf16,        "EYJ"_utf16,
        "<"_utf16,        "</"_utf16,
        ">"_utf16,        "/"_utf16,
        "u"_utf16,        "user"_utf16,
        "<user"_utf16,    "user>"_utf16,
        "pass"_utf16,     "<p>"_utf16,
        "<user >"_utf16,  "****"_utf16,
        "a secret"_utf16, "\r\n"_utf16,
        " | "_utf16,      "and so on, in plain words"_utf16,
    };
    for (auto const& key : CredentialKeys())
    {
        for (auto const& name : {key, UpperCase(key)})
        {
            m_pieces.push_back(Utf16String("<"_utf16) + name + Utf16String(">"_utf16));
            m_pieces.push_back(Utf16String("</"_utf16) + name + Utf16String(">"_utf16));
        }
    }
    m_pieces.insert(m_pieces.end(), std::begin(others), std::end(others));
    // Half a pair of surrogates; letters that some case mappings take for k, s and i; units that differ from those of
    // keys in the bits of a case alone.
    for (auto const unit :
         {u'\x0', u'\xD83D', u'\xDE00', u'\x212A', u'\x17F', u'\x130', u'\x15', u'\x55', u'\xD', u'\xFFFF'})
    {
        m_pieces.emplace_back(1, static_cast<Utf16Unit>(unit));
    }
}

Utf16String MessagePieces::Message(std::span<std::uint8_t const> choices) const
{
    Utf16String message;
    for (auto const choice : choices)
    {
        message += m_pieces[choice % m_pieces.size()];
    }
    return message;
}

Utf16String MessagePieces::Units(std::span<std::uint8_t const> bytes)
{
    Utf16String units;
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2)
    {
        units += static_cast<Utf16Unit>(bytes[at] | bytes[at + 1] << 8);
    }
    return units;
}

} // namespace test
