// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <vector>

namespace Qf
{

/// A mark on an axis.
struct Tick
{
    double value;
    QString label;
};

/// Round values (1, 2 or 5 times a power of ten apart) between two values, in rising order, at most
/// `maximumCount` (2 or more) of them.
///
/// Labels have the digits that the distance needs and no more, with the C locale's point. `from` may exceed
/// `to`; equal or infinite values give no ticks.
[[nodiscard]] std::vector<Tick> axisTicks(double from, double to, int maximumCount);

} // namespace Qf
