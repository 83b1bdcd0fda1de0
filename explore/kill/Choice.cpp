#include "explore/kill/Choice.h"

#include <map>
#include <utility>

namespace explore::kill
{

namespace
{

// Takes one out that is drawn.
template <typename Value>
Value Draw(std::vector<Value>& values, Random& random)
{
    std::swap(values[random.Below(values.size())], values.back());
    auto value = std::move(values.back());
    values.pop_back();
    return value;
}

using Calls = std::vector<std::uint32_t>;

std::vector<Calls> ByKind(std::span<std::uint32_t const> kinds)
{
    std::map<std::uint32_t, Calls> callsOf;
    for (std::uint32_t call = 0; auto const kind : kinds)
    {
        callsOf[kind].push_back(call++);
    }
    std::vector<Calls> all;
    all.reserve(callsOf.size());
    for (auto& [kind, calls] : callsOf)
    {
        all.push_back(std::move(calls));
    }
    return all;
}

} // namespace

std::vector<std::uint32_t> InTurn(std::span<std::uint32_t const> kinds, Random& random)
{
    Calls order;
    for (auto left = ByKind(kinds); !left.empty();)
    {
        std::vector<Calls> next;
        while (!left.empty())
        {
            auto calls = Draw(left, random);
            order.push_back(Draw(calls, random));
            if (!calls.empty())
            {
                next.push_back(std::move(calls));
            }
        }
        left = std::move(next);
    }
    return order;
}

} // namespace explore::kill
