#pragma once
#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace bench
{

// Does the work so many times and gives the microseconds that one time takes.
using Block = std::function<double(int times)>;

// One way to do the work that is compared.
struct Contender
{
    std::string name;
    Block block;
    std::optional<double> limit = {}; // of the ratio to the floor
};

// Times an operation from its beginning to its end.
template <typename Operation>
Block Timed(Operation operation)
{
    return [operation](int times) {
        auto const start = std::chrono::steady_clock::now();
        for (int count = 0; count < times; ++count)
        {
            operation();
        }
        std::chrono::duration<double, std::micro> const taken = std::chrono::steady_clock::now() - start;
        return taken.count() / times;
    };
}

} // namespace bench
