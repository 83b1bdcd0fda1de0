#pragma once
#include <vector>

namespace bench
{

// The median of measurements and its 95 % confidence interval.
struct Interval
{
    double low = 0;
    double median = 0;
    double high = 0;

    bool Contains(double value) const { return low <= value && value <= high; }
    // Half of its width, as a part of the median.
    double Precision() const { return (high - low) / 2 / median; }
};

// By ranks, which supposes nothing of how the measurements are distributed: the median of the whole lies below a
// sample's k-th smallest value as often as k tosses of n come up heads. values: at least one; few give their extremes.
Interval MedianInterval(std::vector<double> values);

} // namespace bench
