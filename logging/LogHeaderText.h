#pragma once
#include <map>
#include <string>

namespace zant
{

// The block of lines that describes the machine at the top of a file begun after a rotation.
struct LogHeaderText
{
    std::wstring title = {};                           // not written when empty
    std::map<std::wstring, std::wstring> entries = {}; // one line each: the key, then the value; in key order
    std::wstring closing = {};                         // not written when empty
    bool merge = false;                                // given to a target: becomes part of the target's own header

    // Takes over what `other` has: its title and closing line where they are not empty, and all its entries.
    void Merge(LogHeaderText const& other);

    // Calls write(std::wstring const&) for each line, in order.
    template <typename Write>
    void ForEachLine(Write write) const
    {
        if (!title.empty())
        {
            write(title);
        }
        for (auto const& [key, value] : entries)
        {
            write(key + value);
        }
        if (!closing.empty())
        {
            write(closing);
        }
    }
};

} // namespace zant
