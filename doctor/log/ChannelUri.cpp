#include "doctor/log/ChannelUri.h"

#include <algorithm>

namespace doctor
{

namespace
{

std::string Shortened(std::string_view uri)
{
    constexpr std::size_t shownOfQuery = 12; // "token=" and a few characters
    auto const query = uri.find('?');
    if (query == uri.npos || uri.size() <= query + 1 + shownOfQuery)
    {
        return std::string(uri);
    }
    auto end = query + 1 + shownOfQuery;
    while ((uri[end] & 0xC0) == 0x80) // in the middle of a character
    {
        --end;
    }
    return std::string(uri.substr(0, end)) + "\u2026";
}

} // namespace

std::string WithShortUris(std::string_view text)
{
    constexpr std::string_view scheme = "https://";
    constexpr std::string_view ends = " \t\"'<>";
    std::string result;
    for (auto begin = text.find(scheme); begin != text.npos; begin = text.find(scheme))
    {
        auto const length = std::min(text.find_first_of(ends, begin), text.size()) - begin;
        auto const uri = text.substr(begin, length);
        result.append(text.substr(0, begin)).append(Shortened(uri));
        text.remove_prefix(begin + length);
    }
    return result.append(text);
}

} // namespace doctor
