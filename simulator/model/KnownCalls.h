#pragma once
#include <span>
#include <string_view>

namespace sim
{

// A call of the platform that can be made to fail.
struct KnownCall
{
    std::wstring_view name;
    bool isAsynchronous; // gives an operation that ends later
    bool canBeNull;      // hands out an object
};

std::span<KnownCall const> KnownCalls();

// Null when there is none of that name.
KnownCall const* FindKnownCall(std::wstring_view name);

} // namespace sim
