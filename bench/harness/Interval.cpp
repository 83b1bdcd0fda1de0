#include "bench/harness/Interval.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace bench
{

Interval MedianInterval(std::vector<double> values)
{
    std::ranges::sort(values);
    auto const last = values.size() - 1;
    auto const middle = (values[last / 2] + values[(last + 1) / 2]) / 2;
    // The deviation of n tosses is sqrt(n) / 2, and 1.96 deviations on either side hold 95 %.
    auto const rank = (static_cast<double>(values.size()) - 1.96 * std::sqrt(values.size())) / 2;
    auto const low = static_cast<std::size_t>(std::max(0.0, std::floor(rank) - 1));
    return {values[low], middle, values[last - low]};
}

} // namespace bench
