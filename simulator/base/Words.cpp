#include "simulator/base/Words.h"

#include "simulator/base/Error.h"
#include "simulator/base/Text.h"

#include <algorithm>

namespace sim
{

namespace
{

constexpr std::wstring_view blanks = L" \t\r\n";
constexpr std::wstring_view quotes = L"'\"";

// Removes the first word from `rest`, which does not start with a blank.
std::wstring TakeWord(std::wstring_view& rest)
{
    std::wstring word;
    while (!rest.empty() && blanks.find(rest.front()) == std::wstring_view::npos)
    {
        auto const first = rest.front();
        rest.remove_prefix(1);
        if (quotes.find(first) == std::wstring_view::npos)
        {
            word += first;
            continue;
        }
        auto const end = rest.find(first);
        if (end == std::wstring_view::npos)
        {
            throw Error(L"a quote " + std::wstring(1, first) + L" is not closed");
        }
        word += rest.substr(0, end);
        rest.remove_prefix(end + 1);
    }
    return word;
}

} // namespace

std::vector<std::wstring> SplitWords(std::wstring_view line)
{
    std::vector<std::wstring> words;
    for (;;)
    {
        auto const start = line.find_first_not_of(blanks);
        if (start == std::wstring_view::npos || line[start] == L'#')
        {
            return words;
        }
        line.remove_prefix(start);
        words.push_back(TakeWord(line));
    }
}

std::wstring Quoted(std::wstring_view text)
{
    if (!text.empty() && text.find_first_of(L" \t\r\n'\"#") == std::wstring_view::npos)
    {
        return std::wstring(text);
    }
    // One kind of quotes may contain the other, so a text with both becomes a chain of quoted pieces.
    std::wstring quoted = L"'";
    for (auto const character : text)
    {
        if (character == L'\'')
        {
            quoted += L"'\"'\"'";
        }
        else
        {
            quoted += blanks.find(character) == std::wstring_view::npos ? character : L' ';
        }
    }
    return quoted + L"'";
}

std::wstring Joined(std::vector<std::wstring> const& words)
{
    std::vector<std::wstring> quoted(words.size());
    std::ranges::transform(words, quoted.begin(), Quoted);
    return Listed(quoted, L" ");
}

} // namespace sim
