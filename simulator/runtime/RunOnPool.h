#pragma once
#include <functional>
#include <winrt/base.h>

namespace sim
{

// Runs a function on a thread of the system's pool, which belongs to the multi-threaded apartment. It must not throw.
inline winrt::fire_and_forget RunOnPool(std::function<void()> function)
{
    co_await winrt::resume_background();
    function();
}

} // namespace sim
