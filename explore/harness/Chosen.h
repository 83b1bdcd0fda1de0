#pragma once
#include <algorithm>
#include <functional>
#include <ranges>
#include <string>
#include <string_view>
#include <vector>

namespace explore
{

// Null where no story has the name. A story is what is played: it has a name.
template <typename Stories>
auto FindNamed(Stories const& stories, std::string_view name) -> std::ranges::range_value_t<Stories> const*
{
    auto const found = std::ranges::find(stories, name, &std::ranges::range_value_t<Stories>::name);
    return found != std::ranges::end(stories) ? &*found : nullptr;
}

template <typename Stories>
std::vector<std::string> NamesOf(Stories const& stories)
{
    std::vector<std::string> names;
    names.reserve(std::ranges::size(stories));
    for (auto const& story : stories)
    {
        names.emplace_back(story.name);
    }
    return names;
}

template <typename Story>
struct Chosen
{
    std::vector<Story const*> stories = {};
    std::string unknown = {}; // a name that none has; empty: each has one
};

// The stories of these names, in that order; without names all that isInShare(story).
template <typename Stories, typename IsInShare>
auto ChosenStories(Stories const& stories, std::vector<std::string> const& names, IsInShare isInShare)
{
    Chosen<std::ranges::range_value_t<Stories>> chosen;
    for (auto const& name : names)
    {
        chosen.stories.push_back(FindNamed(stories, name));
        if (chosen.stories.back() == nullptr)
        {
            return Chosen<std::ranges::range_value_t<Stories>>{{}, name};
        }
    }
    for (auto const& story : stories)
    {
        if (names.empty() && std::invoke(isInShare, story))
        {
            chosen.stories.push_back(&story);
        }
    }
    return chosen;
}

} // namespace explore
