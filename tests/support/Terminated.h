#pragma once
#include <cstdlib>
#include <exception>

namespace test
{

inline constexpr int terminatedCode = 3;

// Makes the program end with terminatedCode when std::terminate is called, for tests of that. The C runtime's handler
// writes a message first, which hangs in a program that GCC links with two C runtimes.
template <typename Function>
void EndsWhenTerminated(Function function)
{
    std::set_terminate([] { std::_Exit(terminatedCode); });
    function();
}

} // namespace test
