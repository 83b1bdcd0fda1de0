#pragma once
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stdexcept>
#include <string>
#include <winrt/base.h>

namespace sim
{

// How long a test waits for something: longer than a busy machine takes, shorter than the test's watchdog.
inline constexpr std::chrono::seconds waitLimit(30);

// The exception for a wait that reaches the limit. missing: what the wait was for, and what there was instead.
inline std::runtime_error Missing(std::wstring const& missing)
{
    return std::runtime_error(winrt::to_string(L"after 30 s still missing: " + missing));
}

// Waits until ready. describe: called with the lock held when the limit is reached, gives the text for Missing.
template <typename Ready, typename Describe>
void WaitLimited(std::unique_lock<std::mutex>& lock, std::condition_variable& changed, Ready const& ready,
                 Describe const& describe)
{
    if (!changed.wait_for(lock, waitLimit, ready))
    {
        throw Missing(describe());
    }
}

} // namespace sim
