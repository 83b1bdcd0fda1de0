#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace doctor
{

// A line of a log file as it stands there.
struct RawLine
{
    std::string_view text{};  // UTF-8 without its line end; valid until the reader takes more bytes
    std::uint64_t number = 0; // in its file, from 1
    bool isDamaged = false;   // it held bytes that are no text, or is one of several pieces of a line that is too long
    bool isComplete = true;   // its line end was there
};

// Splits the bytes of a log file into lines: UTF-16LE, as the app writes it, or UTF-8. The byte-order mark tells which;
// without one the first bytes do, and where these are damaged, the first line in UTF-16. It reads on behind any damage:
// what is no text becomes U+FFFD, a missing or additional byte in UTF-16 costs the line in which it is, and a line
// longer than `mostBytes` comes in pieces. The memory that it uses does not depend on the length of the file. Not for
// several threads at once.
class LineReader
{
  public:
    static constexpr std::size_t mostBytes = std::size_t{64} * 1024; // of a line in UTF-8

    // Takes the next bytes of the file and calls `take(RawLine const&)` for each line that they complete.
    template <typename Take>
    void Add(std::string_view bytes, Take&& take)
    {
        while (Next(bytes))
        {
            take(RawLine(m_line));
        }
    }

    // The file ends here: calls `take` for what stands behind the last line end, if anything.
    template <typename Take>
    void End(Take&& take)
    {
        while (NextAtEnd())
        {
            take(RawLine(m_line));
        }
    }

  private:
    enum class Encoding
    {
        Unknown,
        Utf8,
        Utf16
    };

    bool Next(std::string_view& bytes);
    bool NextAtEnd();
    bool NextUtf8(std::string_view& bytes);
    bool NextUtf16(std::string_view& bytes);
    void TurnToUtf16();
    void Recognise(std::string_view& bytes, bool isEnd);
    void TakeAscii(std::string_view& bytes);
    bool TakeUnit(char16_t unit);
    void TakeOther(char16_t unit);
    void EndHighSurrogate();
    void ForgetGiven();
    bool EndLine(bool isComplete = true);
    bool GivePiece();

    Encoding m_encoding = Encoding::Unknown;
    std::string m_begin;    // the first bytes, until they tell the encoding
    std::string m_text;     // of the line that is read
    bool m_isGiven = false; // m_line is made of m_text
    bool m_isDamaged = false;
    RawLine m_line;
    std::uint64_t m_number = 1;

    // UTF-16 only
    char16_t m_previous = 0;  // the code unit before
    char16_t m_high = 0;      // a high surrogate whose low one is to come
    unsigned char m_half = 0; // the first byte of a code unit
    bool m_hasHalf = false;
    bool m_skipsByte = false; // to get back into step
};

} // namespace doctor
