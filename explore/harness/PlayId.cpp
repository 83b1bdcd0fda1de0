#include "explore/harness/PlayId.h"

#include <algorithm>
#include <charconv>

namespace explore
{

namespace
{

bool IsName(std::string_view text)
{
    return !text.empty() && std::ranges::all_of(text, [](char character) {
        return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
               (character >= '0' && character <= '9') || character == '-';
    });
}

std::optional<Deviation> DeviationOf(std::string_view text)
{
    Deviation deviation = {};
    auto const* const end = text.data() + text.size();
    auto const [rest, error] = std::from_chars(text.data(), text.data() + text.size(), deviation.step);
    if (error != std::errc() || rest == end || *rest != '=')
    {
        return std::nullopt;
    }
    deviation.what = std::string(rest + 1, end);
    return IsName(deviation.what) ? std::optional(deviation) : std::nullopt;
}

} // namespace

std::string TextOf(PlayId const& play)
{
    auto text = play.story;
    for (auto separator = ':'; auto const& deviation : play.deviations)
    {
        text += separator + std::to_string(deviation.step) + '=' + deviation.what;
        separator = ',';
    }
    return text;
}

std::optional<PlayId> PlayIdOf(std::string_view text)
{
    auto const colon = text.find(':');
    PlayId play{std::string(text.substr(0, colon))};
    if (!IsName(play.story))
    {
        return std::nullopt;
    }
    auto rest = colon == text.npos ? std::nullopt : std::optional(text.substr(colon + 1));
    while (rest)
    {
        auto const comma = rest->find(',');
        auto deviation = DeviationOf(rest->substr(0, comma));
        if (!deviation || (!play.deviations.empty() && deviation->step < play.deviations.back().step))
        {
            return std::nullopt;
        }
        play.deviations.push_back(std::move(*deviation));
        rest = comma == rest->npos ? std::nullopt : std::optional(rest->substr(comma + 1));
    }
    return play;
}

} // namespace explore
