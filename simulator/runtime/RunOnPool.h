#pragma once
#include <functional>

namespace sim
{

// Runs a function on a thread of the system's pool, which belongs to the multi-threaded apartment. It must not throw.
void RunOnPool(std::function<void()> function);

} // namespace sim
