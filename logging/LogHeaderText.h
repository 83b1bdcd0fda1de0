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
};

} // namespace zant
