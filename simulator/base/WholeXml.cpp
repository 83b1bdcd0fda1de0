#include "simulator/base/WholeXml.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

namespace sim
{

namespace
{

// Removes the text up to and with the end; false when it has none.
bool Skip(std::string_view& text, std::string_view end) noexcept
{
    auto const at = text.find(end);
    text.remove_prefix(at == text.npos ? text.size() : at + end.size());
    return at != text.npos;
}

// The same up to the end of a tag, which quotes hide. isEmpty: it ends with "/>".
bool SkipTag(std::string_view& text, bool& isEmpty) noexcept
{
    char quote = '\0';
    char before = '\0';
    for (std::size_t at = 0; at < text.size(); before = text[at++])
    {
        auto const character = text[at];
        if (quote != '\0')
        {
            quote = character == quote ? '\0' : quote;
        }
        else if (character == '"' || character == '\'')
        {
            quote = character;
        }
        else if (character == '>')
        {
            isEmpty = before == '/';
            text.remove_prefix(at + 1);
            return true;
        }
    }
    return false;
}

// What is no tag: the start, behind its "<", and the end.
using Other = std::pair<std::string_view, std::string_view>;
constexpr Other others[] = {{"!--", "-->"}, {"![CDATA[", "]]>"}, {"?", "?>"}, {"!", ">"}};

Other const* OtherAt(std::string_view text) noexcept
{
    auto const* const found =
        std::ranges::find_if(others, [&](Other const& other) { return text.starts_with(other.first); });
    return found == std::end(others) ? nullptr : found;
}

} // namespace

bool IsWholeXml(std::string_view text) noexcept
{
    auto hasElement = false;
    std::ptrdiff_t open = 0;
    while (Skip(text, "<"))
    {
        if (auto const* const other = OtherAt(text))
        {
            text.remove_prefix(other->first.size());
            if (!Skip(text, other->second))
            {
                return false;
            }
            continue;
        }
        auto const isEnd = text.starts_with('/');
        auto isEmpty = false;
        if (!SkipTag(text, isEmpty))
        {
            return false;
        }
        hasElement |= !isEnd;
        auto const added = isEmpty ? 0 : 1;
        open += isEnd ? -1 : added;
    }
    return hasElement && open <= 0;
}

} // namespace sim
