#pragma once
#include <string>
#include <string_view>
#include <vector>

namespace sim
{

// A set of named values as text: each entry is LENGTH:NAME TYPE LENGTH:VALUE, with lengths in UTF-16 units, so that any
// text may be in it. What TYPE and VALUE mean, the runtime classes know.
struct SetEntry
{
    std::wstring_view name;
    std::wstring_view type;
    std::wstring_view value;
};

void AppendEntry(std::wstring& set, SetEntry const& entry);

// The entries in their order, which point into `set`. Throws Error when it is no such text.
std::vector<SetEntry> ParseSet(std::wstring_view set);

// One LENGTH:TEXT alone, for values that are lists of texts.
void AppendText(std::wstring& list, std::wstring_view text);

// Takes it off the front. Throws Error when there is none.
std::wstring_view TakeText(std::wstring_view& list);

} // namespace sim
