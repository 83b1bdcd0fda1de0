#include "logging/LineText.h"

#include <algorithm>
#include <cwchar>
#include <span>

namespace zant
{

namespace
{

using namespace std::string_view_literals;

// A decimal number, padded with zeros to a minimum of digits.
class Decimal
{
  public:
    Decimal(std::uint32_t value, std::size_t leastDigits) noexcept
    {
        do
        {
            m_digits[--m_first] = static_cast<wchar_t>(L'0' + value % 10);
            value /= 10;
        } while (value != 0 || m_digits.size() - m_first < leastDigits);
    }

    std::wstring_view View() const noexcept { return {m_digits.begin() + m_first, m_digits.end()}; }

  private:
    std::array<wchar_t, 10> m_digits; // enough for 32 bits; filled from the end
    std::size_t m_first = 10;
};

// Most pieces of a line have a few characters: copying them in a loop is faster than a function call.
wchar_t* Put(wchar_t* to, std::wstring_view piece) noexcept
{
    constexpr std::size_t fewCharacters = 16;
    if (piece.size() > fewCharacters)
    {
        return std::ranges::copy(piece, to).out;
    }
    for (auto const character : piece)
    {
        *to++ = character;
    }
    return to;
}

std::size_t SizeOf(std::span<std::wstring_view const> pieces) noexcept
{
    std::size_t size = 0;
    for (auto const piece : pieces)
    {
        size += piece.size();
    }
    return size;
}

} // namespace

std::wstring DateAndTimeText(std::tm const& local)
{
    std::array<wchar_t, 64> text = {};
    return {text.data(), std::wcsftime(text.data(), text.size(), L"%x %X", &local)};
}

void ComposeLine(std::wstring& line, std::wstring_view separator, LineParts const& parts)
{
    Decimal const milliseconds(parts.milliseconds, 3);
    Decimal const threadId(parts.threadId, 1);
    auto const level = LevelName(parts.level);
    auto const& fields = parts.fields;
    std::array const head = {parts.dateAndTime, L":"sv, milliseconds.View(), separator, L"["sv, level, L"]"sv};
    std::array const columns = {fields[0], fields[1], fields[2],       fields[3],
                                fields[4], fields[5], threadId.View(), parts.message};

    line.resize(SizeOf(head) + SizeOf(columns) + columns.size() * separator.size());
    auto* end = line.data();
    for (auto const piece : head)
    {
        end = Put(end, piece);
    }
    for (auto const column : columns)
    {
        end = Put(Put(end, separator), column);
    }
}

} // namespace zant
