#include "explore/stress/StressLine.h"

#include "explore/harness/Random.h"

#include <algorithm>
#include <charconv>

namespace explore::stress
{

namespace
{

constexpr std::size_t fillerLength = 4'000; // a message that is formatted is cut at 4,094

std::size_t LengthOf(LineName name)
{
    constexpr std::size_t shortest = 40;
    constexpr std::uint64_t range = 640;
    return name.life == filler ? fillerLength : shortest + Random(name.number * 0x1'0000 + name.life).Below(range);
}

template <typename Number>
std::optional<Number> TakeNumber(std::string_view& text, char end)
{
    Number number = 0;
    auto const [rest, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || rest == text.data() + text.size() || *rest != end)
    {
        return std::nullopt;
    }
    text.remove_prefix(static_cast<std::size_t>(rest - text.data()) + 1);
    return number;
}

} // namespace

std::string MessageOf(LineName name)
{
    auto const part = std::to_string(name.life) + '.' + std::to_string(name.number) + ' ';
    auto const length = LengthOf(name);
    std::string message;
    while (message.size() < length)
    {
        message += part;
    }
    return message;
}

std::optional<LineName> LineNameIn(std::string_view message)
{
    auto const life = TakeNumber<std::uint32_t>(message, '.');
    auto const number = life ? TakeNumber<std::uint64_t>(message, ' ') : std::nullopt;
    return number ? std::optional(LineName{*life, *number}) : std::nullopt;
}

std::string BehindDate(std::uint32_t thread, std::string_view message)
{
    std::string line = " | [INFO] | ";
    for (auto const field : {std::string_view(), product, component, category, std::string_view(), std::string_view()})
    {
        line.append(field).append(" | ");
    }
    return line.append(std::to_string(thread)).append(" | ").append(message);
}

bool IsDateOrBeginning(std::string_view text)
{
    constexpr std::string_view form = "00/00/00 00:00:00:000";
    static_assert(form.size() == dateLength);
    return text.size() <= form.size() &&
           std::ranges::equal(text, form.substr(0, text.size()), [](char has, char asked) {
               return asked == '0' ? has >= '0' && has <= '9' : has == asked;
           });
}

} // namespace explore::stress
