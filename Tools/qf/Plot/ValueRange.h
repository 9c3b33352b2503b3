// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

namespace Qf
{

/// The values that get the first and the last colour.
struct ValueRange
{
    double low = 0.0;
    double high = 1.0;
};

/// From the 0.5th to the 99.5th percentile of the finite values, so that a few hot pixels do not darken the
/// rest; widened where that leaves nothing. 0 to 1 without finite values.
[[nodiscard]] ValueRange percentileRange(const std::vector<double>& values);

/// The same with zero in its middle.
[[nodiscard]] ValueRange symmetric(const ValueRange& range);

} // namespace Qf
