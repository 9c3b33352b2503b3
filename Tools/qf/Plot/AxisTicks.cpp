// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/Plot/AxisTicks.h"

#include <algorithm>
#include <cmath>

namespace Qf
{

namespace
{

/// The smallest of 1, 2, 5 times a power of ten that is not below `step`.
double roundedUp(double step)
{
    const double power = std::pow(10.0, std::floor(std::log10(step)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (factor * power >= step * (1.0 - 1e-12)) {
            return factor * power;
        }
    }
    return 10.0 * power;
}

double powerOf(double value)
{
    return std::floor(std::log10(value) + 1e-9);
}

/// Plain digits where they stay short, else a power of ten.
QString plainLabel(double value, double step, double largest)
{
    const int decimals = std::max(0, static_cast<int>(-powerOf(step)));
    if (largest < 1e6 && decimals <= 4) {
        return QString::number(value, 'f', decimals);
    }
    const double digits = powerOf(largest) - powerOf(step) + 1.0;
    return QString::number(value, 'g', static_cast<int>(std::clamp(digits, 1.0, 17.0)))
        .replace(QLatin1String("e+0"), QLatin1String("e"))
        .replace(QLatin1String("e+"), QLatin1String("e"))
        .replace(QLatin1String("e-0"), QLatin1String("e-"));
}

/// With the minus sign, which is as wide as the digits; a hyphen is not.
QString labelOf(double value, double step, double largest)
{
    const QChar minus(0x2212);
    return value == 0.0 ? QStringLiteral("0")
                        : plainLabel(value, step, largest).replace(QLatin1Char('-'), minus);
}

} // namespace

std::vector<Tick> axisTicks(double from, double to, int maximumCount)
{
    const auto [low, high] = std::minmax(from, to);
    const double range = high - low;
    if (!(range > 0.0) || !std::isfinite(range)) {
        return {};
    }
    const double largest = std::max(std::abs(low), std::abs(high));
    const double tolerance = 1e-9 * range;
    const double step = roundedUp(range / std::max(1, maximumCount - 1));
    const double first = std::ceil((low - tolerance) / step);
    std::vector<Tick> ticks;
    for (int i = 0; i < maximumCount && (first + i) * step <= high + tolerance; ++i) {
        const double value = first + i == 0.0 ? 0.0 : (first + i) * step;
        ticks.push_back({value, labelOf(value, step, largest)});
    }
    return ticks;
}

} // namespace Qf
