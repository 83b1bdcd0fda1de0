#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace sim
{

// One value of a value set, as it is sent to another process.
struct SetEntry
{
    // A Windows.Foundation.PropertyType: OtherType (20) for a set, Empty (0) for null.
    static constexpr std::int32_t ofSet = 20;
    static constexpr std::int32_t ofString = 12;
    static constexpr std::int32_t ofArrays = 1024; // the type of an array is that of its elements and this

    std::wstring name;
    std::int32_t type = 0;

    // The little-endian representation of a single value or of an array's elements; strings encoded as a list, a set
    // as its entries (Encoding.h).
    std::string bytes = {};
};

using SetEntries = std::vector<SetEntry>;

// For people: integers in decimal, strings unchanged, other values in hexadecimal. Throws Error for bytes that are not
// a value of their type.
std::wstring TypeName(SetEntry const& entry);
std::wstring ReadableValue(SetEntry const& entry);

} // namespace sim
