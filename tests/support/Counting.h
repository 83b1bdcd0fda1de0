#pragma once

namespace test
{

// Calls the system's function, and counts the calls.
inline auto Counting(int& calls)
{
    return [&calls](auto next, auto... arguments) {
        ++calls;
        return next(arguments...);
    };
}

} // namespace test
