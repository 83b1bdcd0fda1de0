#pragma once
#include "simulator/base/Error.h"
#include "simulator/base/Text.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace sim
{

using Words = std::vector<std::wstring>;

// The arguments of a command are wrong.
class UsageError : public Error
{
  public:
    using Error::Error;
};

// Removes an option from the front of the words; false when it is not there.
inline bool TakeOption(Words& words, std::wstring_view option)
{
    if (words.empty() || words.front() != option)
    {
        return false;
    }
    words.erase(words.begin());
    return true;
}

// A row of a table of commands, which is also their help: of the command line, of a device, of scenarios.
template <typename Function>
struct Command
{
    std::wstring_view name;
    std::wstring_view arguments;
    std::wstring_view summary;
    std::wstring_view help; // further lines, for help on this command
    std::size_t fewestWords;
    std::size_t mostWords;
    Function run;

    std::wstring Usage() const
    {
        return std::wstring(name) + (arguments.empty() ? L"" : L" ") + std::wstring(arguments);
    }

    // Usage and summary, for a list of commands. prefix: stands before the name.
    std::wstring ListLine(std::wstring const& prefix, std::size_t width) const
    {
        return L"  " + LeftAligned(prefix + Usage(), width) + L" " + std::wstring(summary);
    }

    // The words after the command's name. Throws UsageError when there are too few or too many.
    Words ArgumentsOf(Words const& words) const
    {
        if (words.size() <= fewestWords || words.size() - 1 > mostWords)
        {
            throw UsageError(L"usage: " + Usage());
        }
        return {words.begin() + 1, words.end()};
    }
};

constexpr std::size_t anyNumber = SIZE_MAX;

// The row of that name, or null.
template <typename Table>
auto const* FindCommand(Table const& table, std::wstring_view name)
{
    auto const found = std::ranges::find(table, name, [](auto const& command) { return command.name; });
    return found == std::end(table) ? nullptr : &*found;
}

// The row that the first word names, or null.
template <typename Table>
auto const* FindCommand(Table const& table, Words const& words)
{
    return FindCommand(table, words.empty() ? std::wstring_view() : std::wstring_view(words.front()));
}

} // namespace sim
