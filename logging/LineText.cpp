#include "logging/LineText.h"

#include <charconv>
#include <cwchar>
#include <iterator>

namespace zant
{

namespace
{

void AppendDecimal(std::wstring& text, std::uint32_t value, std::size_t leastDigits)
{
    char digits[10]; // of the greatest 32-bit number
    auto const end = std::to_chars(std::begin(digits), std::end(digits), value).ptr;
    auto const count = static_cast<std::size_t>(end - digits);
    text.append(leastDigits > count ? leastDigits - count : 0, L'0');
    text.append(digits, end);
}

} // namespace

std::wstring DateAndTimeText(std::tm const& local)
{
    wchar_t text[64];
    return std::wstring(text, std::wcsftime(text, std::size(text), L"%x %X", &local));
}

void ComposeLine(std::wstring& line, std::wstring_view separator, LineParts const& parts)
{
    line.assign(parts.dateAndTime);
    line += L':';
    AppendDecimal(line, parts.milliseconds, 3);
    line += separator;
    line += L'[';
    line += LevelName(parts.level);
    line += L']';
    line += separator;
    for (auto const* const field : parts.fields)
    {
        if (field != nullptr)
        {
            line += field;
        }
        line += separator;
    }
    AppendDecimal(line, parts.threadId, 1);
    line += separator;
    line += parts.message;
}

} // namespace zant
