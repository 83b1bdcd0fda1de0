#include "doctor/log/LineReader.h"

#include "doctor/log/Utf8.h"

#include <algorithm>
#include <array>
#include <utility>

namespace doctor
{

namespace
{

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view utf16Mark = "\xFF\xFE";

constexpr std::size_t bytesToRecognise = 64;

// Text in Latin script has a zero in every other byte.
bool LooksLikeUtf16(std::string_view bytes)
{
    auto const zeros = std::ranges::count(bytes, '\0');
    return bytes.size() >= 2 && static_cast<std::size_t>(zeros) * 3 >= bytes.size();
}

// The bytes up to a line feed, read as UTF-8, are text in Latin script of the other encoding. Zeros alone are not: a
// lost write leaves them in any file.
bool IsLineOfUtf16(std::string_view bytes)
{
    constexpr std::size_t fewest = 8;
    auto const units = bytes.size() / 2;
    std::size_t latin = 0;
    for (auto at = bytes.size() % 2; at < bytes.size(); at += 2)
    {
        latin += bytes[at] != 0 && bytes[at + 1] == 0 ? 1 : 0;
    }
    return units >= fewest && latin * 2 >= units;
}

bool IsHighSurrogate(char16_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool IsLowSurrogate(char16_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

} // namespace

bool LineReader::Next(std::string_view& bytes)
{
    if (m_encoding == Encoding::Unknown)
    {
        Recognise(bytes, false);
    }
    if (!m_begin.empty() && m_encoding != Encoding::Unknown)
    {
        std::string_view begin = m_begin;
        auto const found = m_encoding == Encoding::Utf8 ? NextUtf8(begin) : NextUtf16(begin);
        m_begin.erase(0, m_begin.size() - begin.size());
        if (found)
        {
            return true;
        }
    }
    switch (m_encoding)
    {
    case Encoding::Utf8:
        return NextUtf8(bytes);
    case Encoding::Utf16:
        return NextUtf16(bytes);
    default:
        return false;
    }
}

// Keeps the first bytes until they are enough to tell, and takes the mark away.
void LineReader::Recognise(std::string_view& bytes, bool isEnd)
{
    auto const more = std::min(bytes.size(), bytesToRecognise - m_begin.size());
    m_begin.append(bytes.substr(0, more));
    bytes.remove_prefix(more);
    if (m_begin.size() < bytesToRecognise && !isEnd)
    {
        return;
    }
    if (m_begin.starts_with(utf16Mark))
    {
        m_begin.erase(0, utf16Mark.size());
        m_encoding = Encoding::Utf16;
    }
    else if (m_begin.starts_with(utf8Mark))
    {
        m_begin.erase(0, utf8Mark.size());
        m_encoding = Encoding::Utf8;
    }
    else
    {
        m_encoding = LooksLikeUtf16(m_begin) ? Encoding::Utf16 : Encoding::Utf8;
    }
}

bool LineReader::NextAtEnd()
{
    std::string_view none;
    if (m_encoding == Encoding::Unknown)
    {
        Recognise(none, true);
    }
    if (Next(none))
    {
        return true;
    }
    ForgetGiven();
    if (m_hasHalf)
    {
        m_hasHalf = false;
        TakeOther(replacementCharacter);
        m_isDamaged = true;
    }
    EndHighSurrogate();
    return !m_text.empty() && EndLine(false);
}

void LineReader::ForgetGiven()
{
    if (m_isGiven)
    {
        m_text.clear();
        m_isGiven = false;
    }
}

bool LineReader::NextUtf8(std::string_view& bytes)
{
    ForgetGiven();
    auto const room = bytes.substr(0, mostBytes - m_text.size());
    auto const end = room.find('\n');
    m_text.append(room.substr(0, end));
    bytes.remove_prefix(end == room.npos ? room.size() : end + 1);
    if (end != room.npos)
    {
        TurnToUtf16();
        return EndLine();
    }
    return m_text.size() >= mostBytes && GivePiece();
}

// Decodes the line again where the file's begin had hidden its encoding. Its last byte is the end of a code unit.
void LineReader::TurnToUtf16()
{
    if (!IsLineOfUtf16(m_text))
    {
        return;
    }
    m_encoding = Encoding::Utf16;
    auto const line = std::exchange(m_text, {});
    auto bytes = std::string_view(line).substr(line.size() % 2);
    NextUtf16(bytes);
    m_skipsByte = true; // the second one of the line feed
}

bool LineReader::NextUtf16(std::string_view& bytes)
{
    ForgetGiven();
    while (!bytes.empty())
    {
        TakeAscii(bytes);
        if (bytes.empty())
        {
            break;
        }
        auto const byte = static_cast<unsigned char>(bytes.front());
        bytes.remove_prefix(1);
        if (m_skipsByte)
        {
            m_skipsByte = false;
        }
        else if (!m_hasHalf)
        {
            m_half = byte;
            m_hasHalf = true;
        }
        else
        {
            m_hasHalf = false;
            if (TakeUnit(static_cast<char16_t>(m_half | byte << 8)))
            {
                return true;
            }
        }
    }
    return false;
}

// Almost all of a log is ASCII, of which whole runs are taken. What ends a line or a piece of one is left.
void LineReader::TakeAscii(std::string_view& bytes)
{
    if (m_hasHalf || m_skipsByte || m_high != 0)
    {
        return;
    }
    std::array<char, 512> run;
    auto const most = std::min({bytes.size() / 2, run.size(), mostBytes - 1 - m_text.size()});
    std::size_t count = 0;
    for (; count < most; ++count)
    {
        auto const character = bytes[count * 2];
        if (bytes[count * 2 + 1] != 0 || character < 0 || character == '\n')
        {
            break;
        }
        run[count] = character;
    }
    if (count > 0)
    {
        m_previous = static_cast<char16_t>(run[count - 1]);
        m_text.append(run.data(), count);
        bytes.remove_prefix(count * 2);
    }
}

// True when a line is given.
bool LineReader::TakeUnit(char16_t unit)
{
    auto const previous = m_previous;
    m_previous = unit;
    // CR LF, out of step: no text holds these two characters.
    if (previous == 0x0D00 && unit == 0x0A00)
    {
        m_skipsByte = true;
        m_isDamaged = true;
        return EndLine();
    }
    if (unit == u'\n')
    {
        EndHighSurrogate();
        return EndLine();
    }
    if (unit < 0x80 && m_high == 0)
    {
        m_text += static_cast<char>(unit);
    }
    else
    {
        TakeOther(unit);
    }
    return m_text.size() >= mostBytes && GivePiece();
}

void LineReader::TakeOther(char16_t unit)
{
    if (IsLowSurrogate(unit) && m_high != 0)
    {
        AppendUtf8(m_text, 0x10000 + (static_cast<char32_t>(m_high - 0xD800) << 10) + (unit - 0xDC00));
        m_high = 0;
        return;
    }
    EndHighSurrogate();
    if (IsHighSurrogate(unit))
    {
        m_high = unit;
        return;
    }
    auto const isUnpaired = IsLowSurrogate(unit);
    m_isDamaged |= isUnpaired;
    AppendUtf8(m_text, isUnpaired ? replacementCharacter : unit);
}

void LineReader::EndHighSurrogate()
{
    if (m_high != 0)
    {
        m_high = 0;
        m_isDamaged = true;
        AppendUtf8(m_text, replacementCharacter);
    }
}

bool LineReader::EndLine(bool isComplete)
{
    if (m_text.ends_with('\r'))
    {
        m_text.pop_back();
    }
    m_isDamaged |= m_encoding == Encoding::Utf8 && ReplaceMalformed(m_text);
    m_line = {m_text, m_number, m_isDamaged, isComplete};
    ++m_number;
    m_isDamaged = false;
    m_isGiven = true;
    return true;
}

bool LineReader::GivePiece()
{
    m_isDamaged = true;
    EndLine(false);
    --m_number;
    m_isDamaged = true;
    return true;
}

} // namespace doctor
