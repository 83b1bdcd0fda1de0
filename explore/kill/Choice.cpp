#include "explore/kill/Choice.h"

#include <map>
#include <utility>

namespace explore::kill
{

std::vector<std::uint32_t> InTurn(std::span<std::uint32_t const> functions, Random& random)
{
    std::map<std::uint32_t, std::vector<std::uint32_t>> callsOf;
    for (std::uint32_t call = 0; auto const function : functions)
    {
        callsOf[function].push_back(call++);
    }
    std::vector<std::uint32_t> order;
    while (!callsOf.empty())
    {
        for (auto& [function, calls] : callsOf)
        {
            std::swap(calls[random.Below(calls.size())], calls.back());
            order.push_back(calls.back());
            calls.pop_back();
        }
        std::erase_if(callsOf, [](auto const& entry) { return entry.second.empty(); });
    }
    return order;
}

} // namespace explore::kill
