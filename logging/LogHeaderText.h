#pragma once
#include <map>
#include <string>

namespace zant
{

// The lines at the top of a file begun after a rotation, which describe the machine.
struct LogHeaderText
{
    std::wstring title = {};                           // not written when empty
    std::map<std::wstring, std::wstring> entries = {}; // one line each, key and value, in key order
    std::wstring closing = {};                         // not written when empty
    bool merge = false;                                // whether LogHeader merges it into the target's stored header

    // Merges `other` into this header: a title or closing line that is not empty replaces the present one, and each
    // entry is inserted or overwrites that of the same key.
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
