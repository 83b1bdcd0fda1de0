#include "explore/kill/LogText.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace explore::kill
{

namespace
{

constexpr std::string_view mark = "\xFF\xFE";
constexpr std::string_view lineEnd("\r\0\n\0", 4);
constexpr std::size_t unit = sizeof(char16_t);

std::u16string TextOf(std::string_view bytes)
{
    std::u16string text(bytes.size() / unit, u'\0');
    std::memcpy(text.data(), bytes.data(), text.size() * unit);
    return text;
}

// Most of a log at its limit is a hole: eight bytes at a time.
std::size_t BehindHole(std::string_view bytes, std::size_t at)
{
    std::uint64_t word = 0;
    for (; at + sizeof word <= bytes.size(); at += sizeof word)
    {
        std::memcpy(&word, bytes.data() + at, sizeof word);
        if (word != 0)
        {
            break;
        }
    }
    while (at + unit <= bytes.size() && bytes[at] == '\0' && bytes[at + 1] == '\0')
    {
        at += unit;
    }
    return at;
}

// At a whole code unit.
std::size_t FindLineEnd(std::string_view bytes, std::size_t from)
{
    auto at = bytes.find(lineEnd, from);
    while (at != bytes.npos && (at - from) % unit != 0)
    {
        at = bytes.find(lineEnd, at + 1);
    }
    return at;
}

bool IsDigit(char16_t character)
{
    return character >= u'0' && character <= u'9';
}

// Of the form 01/05/24 09:30:12:045.
bool IsTime(std::u16string_view text)
{
    constexpr std::u16string_view form = u"00/00/00 00:00:00:000";
    return std::ranges::equal(text, form, [](char16_t character, char16_t expected) {
        return expected == u'0' ? IsDigit(character) : character == expected;
    });
}

std::optional<std::uint32_t> NumberOf(std::u16string_view text)
{
    constexpr std::size_t mostDigits = 9;
    if (text.empty() || text.size() > mostDigits || !std::ranges::all_of(text, IsDigit))
    {
        return std::nullopt;
    }
    std::uint32_t number = 0;
    for (auto const digit : text)
    {
        number = number * 10 + static_cast<std::uint32_t>(digit - u'0');
    }
    return number;
}

} // namespace

LogText ReadLogText(std::string name, bool isCopy, std::string_view bytes)
{
    LogText log{std::move(name), isCopy, bytes.size(), bytes.starts_with(mark)};
    if (!log.hasMark)
    {
        return log;
    }
    log.hasHalf = bytes.size() % unit != 0;
    auto begin = BehindHole(bytes, mark.size());
    for (auto end = FindLineEnd(bytes, begin); end != bytes.npos; end = FindLineEnd(bytes, begin))
    {
        log.lines.push_back(TextOf(bytes.substr(begin, end - begin)));
        begin = BehindHole(bytes, end + lineEnd.size());
    }
    log.rest = TextOf(bytes.substr(begin));
    return log;
}

std::optional<LineFields> FieldsOf(std::u16string_view line)
{
    constexpr std::u16string_view separator = u" | ";
    std::array<std::u16string_view, 9> fields; // time, level, one that nothing fills, five names, thread
    for (auto& field : fields)
    {
        auto const end = line.find(separator);
        if (end == line.npos)
        {
            return std::nullopt;
        }
        field = line.substr(0, end);
        line.remove_prefix(end + separator.size());
    }
    auto const thread = NumberOf(fields.back());
    auto const hasLevel = fields[1] == u"[INFO]" || fields[1] == u"[ERROR]";
    return thread && hasLevel && IsTime(fields[0]) ? std::optional(LineFields{*thread, std::u16string(line)})
                                                   : std::nullopt;
}

bool IsHeader(std::u16string_view message)
{
    constexpr std::u16string_view begins[] = {u"Bit: ",       u"HOV Version: ", u"OS Build Version: ",
                                              u"OS Locale: ", u"OS Name: ",     u"OS Version: "};
    return message.find_first_not_of(u'*') == message.npos ||
           std::ranges::any_of(begins, [&](auto const begin) { return message.starts_with(begin); });
}

std::string Narrow(std::u16string_view text)
{
    std::string narrow(text.size(), '?');
    std::ranges::transform(text, narrow.begin(), [](char16_t character) {
        return character >= u' ' && character <= u'~' ? static_cast<char>(character) : '?';
    });
    return narrow;
}

} // namespace explore::kill
