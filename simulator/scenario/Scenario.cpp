#include "simulator/scenario/Scenario.h"

#include "simulator/base/Error.h"
#include "simulator/base/Files.h"
#include "simulator/base/Text.h"
#include "simulator/base/Words.h"

namespace sim
{

namespace
{

std::wstring Trimmed(std::wstring_view text)
{
    constexpr std::wstring_view blanks = L" \t\r";
    auto const start = text.find_first_not_of(blanks);
    if (start == std::wstring_view::npos)
    {
        return {};
    }
    return std::wstring(text.substr(start, text.find_last_not_of(blanks) - start + 1));
}

Step ParseStep(std::size_t line, std::wstring text)
try
{
    auto words = SplitWords(text);
    return {line, std::move(text), std::move(words)};
}
catch (Error const& error)
{
    throw Error(L"line " + std::to_wstring(line) + L": " + error.Message());
}

} // namespace

std::vector<Step> ParseScenario(std::wstring_view text)
{
    std::vector<Step> steps;
    for (std::size_t line = 1; !text.empty(); ++line)
    {
        auto const end = std::min(text.find(L'\n'), text.size());
        auto step = ParseStep(line, Trimmed(text.substr(0, end)));
        if (!step.words.empty())
        {
            steps.push_back(std::move(step));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return steps.empty() ? throw Error(L"there is no step in it") : steps;
}

std::vector<Step> ReadScenario(std::wstring const& path)
try
{
    return ParseScenario(ReadText(path));
}
catch (Error const& error)
{
    throw Error(path + L": " + error.Message());
}

} // namespace sim
