#pragma once
#include <span>
#include <string_view>

namespace sim
{

// What a call of the platform gives its caller, which says how it can fail.
enum class Gives
{
    NoObject,        // it can fail, and no more
    Object,          // that could be null
    Operation,       // that ends later, or could be null
    StatusOperation, // the same, and completes with a status
};

// A call of the platform that can be made to fail.
struct KnownCall
{
    std::wstring_view name;
    Gives gives;
};

std::span<KnownCall const> KnownCalls();

// Null when there is none of that name.
KnownCall const* FindKnownCall(std::wstring_view name);

} // namespace sim
