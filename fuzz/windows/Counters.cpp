#include "fuzz/windows/Counters.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <span>
#include <vector>

// The linker sorts these in front of the counters of all files and behind them; the counters begin eight bytes behind
// the first. The compiler demands the names, and that each file can hand its counters over.
extern "C"
{
    [[gnu::section(".SCOV$CA"), gnu::used]] std::uint64_t __start___sancov_cntrs = 0;
    [[gnu::section(".SCOV$CZ"), gnu::used]] std::uint8_t __stop___sancov_cntrs = 0;

    void __sanitizer_cov_8bit_counters_init(std::uint8_t*, std::uint8_t*) {}
}

namespace
{

std::span<std::uint8_t> Counters() noexcept
{
    return {reinterpret_cast<std::uint8_t*>(&__start___sancov_cntrs + 1), &__stop___sancov_cntrs};
}

} // namespace

namespace fuzz
{

void ClearCounters() noexcept
{
    std::ranges::fill(Counters(), std::uint8_t());
}

bool TakeNews()
{
    static std::vector<std::uint8_t> seen; // a bit for each order of magnitude
    auto const counters = Counters();
    seen.resize(counters.size());
    auto isNew = false;
    for (std::size_t at = 0; at < counters.size(); ++at)
    {
        auto const magnitude = static_cast<std::uint8_t>(std::bit_floor(counters[at]));
        isNew |= (magnitude & ~seen[at]) != 0;
        seen[at] |= magnitude;
    }
    return isNew;
}

} // namespace fuzz
