#pragma once
#include <cstdlib>
#include <exception>

namespace test
{

inline constexpr int terminatedCode = 3;

// For tests of what ends the process: the program ends with terminatedCode when std::terminate is called. The runtime's
// own handler writes a message first, which hangs in a program that GCC links with two C runtimes.
template <typename Function>
void EndsWhenTerminated(Function function)
{
    std::set_terminate([] { std::_Exit(terminatedCode); });
    function();
}

} // namespace test
