// Lines and headers of the log, against their parts put together one by one.
#include "fuzz/Choices.h"
#include "fuzz/Demand.h"
#include "logging/LineText.h"
#include "logging/LogHeaderText.h"

#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

using namespace fuzz;
using namespace zant;

namespace
{

std::wstring Printed(char const* format, auto... numbers)
{
    char text[64];
    auto const size = std::snprintf(text, sizeof text, format, numbers...);
    return {text, text + size};
}

std::wstring NameOf(std::int32_t level)
{
    static constexpr std::array names = {L"TRACE", L"DEBUG", L"INFO", L"WARN", L"ERROR", L"FATAL", L"NONE"};
    auto const isKnown = level >= 10 && level <= 70 && level % 10 == 0;
    return isKnown ? names[static_cast<std::size_t>(level / 10 - 1)] : L"ALL";
}

// Texts short and long: the composer copies them in two ways.
std::wstring SomeText(Choices& choices)
{
    auto const text = choices.Units(40);
    return choices.Below(8) == 0 ? text + std::wstring(choices.Below(5000), L'x') : text;
}

void CheckLine(Choices& choices)
{
    static std::wstring line; // with what the line before has left in it
    auto const separator = choices.Flag() ? std::wstring(L" | ") : choices.Units(6);
    auto const level =
        choices.Flag() ? static_cast<std::int32_t>(choices.Below(9)) * 10 : static_cast<std::int32_t>(choices.Number());
    auto const milliseconds = choices.Flag() ? choices.Below(1000) : choices.Number();
    auto const threadId = choices.Number() >> choices.Below(32);
    auto const dateAndTime = SomeText(choices);
    std::array<std::wstring, 6> fields;
    std::ranges::generate(fields, [&] { return SomeText(choices); });
    auto const message = SomeText(choices);

    auto expected = dateAndTime + L":" + Printed("%03u", milliseconds) + separator + L"[" + NameOf(level) + L"]";
    for (auto const& field : fields)
    {
        expected += separator + field;
    }
    expected += separator + Printed("%u", threadId) + separator + message;

    ComposeLine(line, separator,
                {.dateAndTime = dateAndTime,
                 .milliseconds = milliseconds,
                 .level = static_cast<LogLevel>(level),
                 .fields = {fields[0], fields[1], fields[2], fields[3], fields[4], fields[5]},
                 .threadId = threadId,
                 .message = message});
    Demand(line == expected, "the line");
}

void CheckTime(Choices& choices)
{
    std::tm local = {};
    local.tm_year = static_cast<int>(choices.Below(200));
    local.tm_mon = static_cast<int>(choices.Below(12));
    local.tm_mday = static_cast<int>(choices.Below(31)) + 1;
    local.tm_hour = static_cast<int>(choices.Below(24));
    local.tm_min = static_cast<int>(choices.Below(60));
    local.tm_sec = static_cast<int>(choices.Below(61));
    Demand(DateAndTimeText(local) == Printed("%02d/%02d/%02d %02d:%02d:%02d", local.tm_mon + 1, local.tm_mday,
                                             local.tm_year % 100, local.tm_hour, local.tm_min, local.tm_sec),
           "the date and time");
}

using Entries = std::vector<std::pair<std::wstring, std::wstring>>;

// Each entry once, the last of a key, in key order.
Entries Sorted(Entries const& entries)
{
    Entries sorted;
    for (auto const& entry : entries)
    {
        std::erase_if(sorted, [&](auto const& earlier) { return earlier.first == entry.first; });
        sorted.push_back(entry);
    }
    std::ranges::sort(sorted);
    return sorted;
}

void CheckHeader(Choices& choices)
{
    LogHeaderText header;
    std::wstring title;
    std::wstring closing;
    Entries entries;
    for (auto merges = choices.Below(5); merges > 0; --merges)
    {
        LogHeaderText other{.title = choices.Text(2, L"*-"), .entries = {}, .closing = choices.Text(2, L"*-")};
        title = other.title.empty() ? title : other.title;
        closing = other.closing.empty() ? closing : other.closing;
        for (auto count = choices.Below(5); count > 0; --count)
        {
            auto const key = choices.Text(2, L"ab: ");
            other.entries[key] = choices.Units(3);
        }
        entries.insert(entries.end(), other.entries.begin(), other.entries.end());
        header.Merge(other);
    }
    std::vector<std::wstring> expected;
    if (!title.empty())
    {
        expected.push_back(title);
    }
    for (auto const& [key, value] : Sorted(entries))
    {
        expected.push_back(key + value);
    }
    if (!closing.empty())
    {
        expected.push_back(closing);
    }
    std::vector<std::wstring> written;
    header.ForEachLine([&](std::wstring const& line) { written.push_back(line); });
    Demand(written == expected, "the header");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Choices choices({data, size});
    switch (choices.Below(4))
    {
    case 0:
        CheckTime(choices);
        break;
    case 1:
        CheckHeader(choices);
        break;
    default:
        CheckLine(choices);
    }
    return 0;
}
