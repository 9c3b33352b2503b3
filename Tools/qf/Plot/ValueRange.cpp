// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/Plot/ValueRange.h"

#include <algorithm>
#include <cmath>

namespace Qf
{

namespace
{

/// Reorders `values`.
double percentile(std::vector<double>& values, double share)
{
    const auto index =
        static_cast<std::ptrdiff_t>(std::lround(share * static_cast<double>(values.size() - 1)));
    std::nth_element(values.begin(), values.begin() + index, values.end());
    return values[static_cast<std::size_t>(index)];
}

} // namespace

ValueRange percentileRange(const std::vector<double>& values)
{
    std::vector<double> finite;
    finite.reserve(values.size());
    std::copy_if(values.begin(), values.end(), std::back_inserter(finite),
                 [](double value) { return std::isfinite(value); });
    if (finite.empty()) {
        return {};
    }
    ValueRange range{percentile(finite, 0.005), percentile(finite, 0.995)};
    if (!(range.low < range.high)) {
        const auto [low, high] = std::minmax_element(finite.begin(), finite.end());
        range = {*low, *high};
    }
    if (!(range.low < range.high)) {
        const double margin = std::max(0.5, 1e-6 * std::abs(range.low));
        range = {range.low - margin, range.high + margin};
    }
    return range;
}

ValueRange symmetric(const ValueRange& range)
{
    const double largest = std::max(std::abs(range.low), std::abs(range.high));
    return {-largest, largest};
}

} // namespace Qf
