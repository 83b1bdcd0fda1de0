#pragma once
#include <string>
#include <string_view>
#include <vector>

namespace sim
{

// A set of named values as text: each entry is LENGTH:NAME TYPE LENGTH:VALUE, with lengths in UTF-16 units, so that any
// text may be in it. What TYPE and VALUE mean, the runtime classes know; arrays of
// anything but texts (TYPE[]) are bytes.
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

// Bytes as a value: COUNT:UNITS, two bytes in each unit.
std::wstring PackBytes(std::string_view bytes);

// Throws Error when it is no such text.
std::string UnpackBytes(std::wstring_view text);

// The value as a person reads it: bytes in hexadecimal. Throws Error as UnpackBytes does.
std::wstring ReadableValue(SetEntry const& entry);

} // namespace sim
