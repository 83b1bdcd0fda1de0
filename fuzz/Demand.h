#pragma once
#include <cstdio>
#include <cstdlib>
#include <source_location>

namespace fuzz
{

// Ends the process where a rule is broken: the fuzzer then keeps the input.
inline void Demand(bool holds, char const* what = "a rule",
                   std::source_location where = std::source_location::current())
{
    if (!holds)
    {
        std::fprintf(stderr, "differs: %s (%s:%u)\n", what, where.file_name(), static_cast<unsigned>(where.line()));
        std::fflush(stderr);
        std::abort();
    }
}

} // namespace fuzz
