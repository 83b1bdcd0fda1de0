#include "explore/harness/Options.h"

#include <algorithm>
#include <charconv>
#include <iterator>

namespace explore
{

namespace
{

std::optional<std::uint64_t> NumberOf(std::string_view text)
{
    std::uint64_t number = 0;
    auto const [rest, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && rest == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

bool SetSeed(Options& options, std::string_view value)
{
    auto const number = NumberOf(value);
    options.seed = number.value_or(0);
    return number.has_value();
}

bool SetLongest(Options& options, std::string_view value)
{
    constexpr std::uint64_t mostMinutes = 100'000;
    auto const minutes = NumberOf(value);
    options.longest = std::chrono::minutes(minutes.value_or(0));
    return minutes && *minutes != 0 && *minutes <= mostMinutes;
}

bool SetReplay(Options& options, std::string_view value)
{
    options.replay = PlayIdOf(value);
    return options.replay.has_value();
}

struct Option
{
    std::string_view name;
    bool (*set)(Options&, std::string_view);
};

constexpr Option withValue[] = {{"--seed", SetSeed}, {"--for", SetLongest}, {"--replay", SetReplay}};

} // namespace

ParsedOptions ParseOptions(std::span<char const* const> arguments)
{
    ParsedOptions parsed;
    while (!arguments.empty())
    {
        std::string const word = arguments.front();
        arguments = arguments.subspan(1);
        auto const* const option = std::ranges::find(withValue, word, &Option::name);
        if (option != std::end(withValue))
        {
            if (arguments.empty() || !option->set(parsed.options, arguments.front()))
            {
                parsed.error = arguments.empty() ? word + " needs a value" : word + " takes no " + arguments.front();
                return parsed;
            }
            arguments = arguments.subspan(1);
        }
        else if (word == "--short")
        {
            parsed.options.isShort = true;
        }
        else if (word.starts_with("-"))
        {
            parsed.error = "there is no option " + word;
            return parsed;
        }
        else
        {
            parsed.options.stories.push_back(word);
        }
    }
    return parsed;
}

} // namespace explore
