#include "explore/harness/Refusal.h"

#include <iostream>

namespace explore
{

namespace
{

std::string Joined(std::vector<std::string> const& words)
{
    std::string text;
    for (auto const& word : words)
    {
        text += (text.empty() ? "" : ", ") + word;
    }
    return text;
}

std::string TextOf(Deviation const& deviation)
{
    return std::to_string(deviation.step) + "=" + deviation.what;
}

} // namespace

std::string NoStory(std::string_view kind, std::string const& name, std::vector<std::string> const& names)
{
    return "there is no " + std::string(kind) + " " + name + "; there are: " + Joined(names);
}

std::string NoStep(Deviation const& deviation, std::size_t steps)
{
    auto const last = steps != 0 ? "; the last step of that play is " + std::to_string(steps - 1)
                                 : std::string("; that play has no steps");
    return TextOf(deviation) + " cannot be played" + last;
}

std::string NoSecond(Deviation const& deviation)
{
    return TextOf(deviation) + " cannot be played; that step has one deviation";
}

std::string NoChoice(Deviation const& deviation, std::vector<std::string> const& choices)
{
    return TextOf(deviation) + " cannot be played; at that step there are: " + Joined(choices);
}

int Refuse(std::string_view subject, std::string const& why)
{
    std::cerr << "explore " << subject << ": " << why << '\n';
    return 2;
}

} // namespace explore
