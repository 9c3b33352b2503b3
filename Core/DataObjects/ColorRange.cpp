// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ColorRange.h"

#include "Core/Common/TargetClones.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

namespace DataObjects::Private
{

namespace
{

/// Values between which the mapping is not constant: those below map as `low` does, those above as `high`.
struct Bounds
{
    unsigned short low;
    unsigned short high;

    [[nodiscard]] std::size_t count() const { return high - low + std::size_t{1}; }
};

Bounds boundsOf(const ColorRange& colorRange)
{
    const auto word = [](double value) {
        return static_cast<unsigned short>(value > 0 ? std::min(value, 65535.0) : 0.0);
    };
    const auto [minimum, range, top] = colorRange;
    unsigned short high = word(std::ceil(minimum + range));
    // The sum may have been rounded down.
    if ((high - minimum) / range < 1) {
        high = word(high + 1.0);
    }
    return {word(std::floor(minimum)), high};
}

DATAOBJECTS_TARGET_CLONES void mapEach(unsigned short* words, std::size_t count, const ColorRange& colorRange)
{
    const auto [minimum, range, top] = colorRange;
    for (std::size_t i = 0; i < count; ++i) {
        const double t = (words[i] - minimum) / range;
        const double raised = t > 0 ? t : 0;
        words[i] = static_cast<unsigned short>(static_cast<int>(top * (raised < 1 ? raised : 1)));
    }
}

DATAOBJECTS_TARGET_CLONES void mapAlongLine(unsigned short* words, std::size_t count, const Bounds& bounds,
                                            double factor, double offset)
{
    const auto [low, high] = bounds;
    for (std::size_t i = 0; i < count; ++i) {
        const unsigned short word = std::min(std::max(words[i], low), high);
        words[i] = static_cast<unsigned short>(static_cast<int>(word * factor + offset));
    }
}

void lookUp(unsigned short* words, std::size_t count, const unsigned short* table)
{
    for (std::size_t i = 0; i < count; ++i) {
        words[i] = table[words[i]];
    }
}

std::vector<unsigned short> valuesOf(const Bounds& bounds)
{
    std::vector<unsigned short> values(bounds.count());
    std::iota(values.begin(), values.end(), bounds.low);
    return values;
}

/// One multiplication takes a fraction of the time of a division, and less than a table. Quotients of whole
/// numbers are whole or stay away from whole numbers by 1 / range at least: a line that is half as much
/// higher is on the right side of both. Whether it really is, is tried with all values. \param mapped what
/// the values within the bounds become \return false when nothing was done
bool mapByMultiplication(unsigned short* words, std::size_t count, const ColorRange& colorRange,
                         const Bounds& bounds, const std::vector<unsigned short>& mapped)
{
    const auto [minimum, range, top] = colorRange;
    // So that nothing overflows: at the bounds the line is at most one step beyond 0 and the top.
    if (range < 1 || range > 0x10000 || std::abs(minimum) > 0x10000) {
        return false;
    }
    const double factor = top / range;
    const double offset = 0.5 / range - minimum * factor;
    std::vector<unsigned short> tried = valuesOf(bounds);
    mapAlongLine(tried.data(), tried.size(), bounds, factor, offset);
    if (tried != mapped) {
        return false;
    }
    mapAlongLine(words, count, bounds, factor, offset);
    return true;
}

void mapByTable(unsigned short* words, std::size_t count, const Bounds& bounds,
                const std::vector<unsigned short>& mapped)
{
    std::vector<unsigned short> table(0x10000, mapped.back());
    const auto low = table.begin() + bounds.low;
    std::fill(table.begin(), low, mapped.front());
    std::copy(mapped.begin(), mapped.end(), low);
    lookUp(words, count, table.data());
}

} // namespace

void applyColorRange(unsigned short* words, std::size_t count, const ColorRange& colorRange)
{
    const Bounds bounds = boundsOf(colorRange);
    if (count < 2 * bounds.count()) {
        mapEach(words, count, colorRange);
        return;
    }
    std::vector<unsigned short> mapped = valuesOf(bounds);
    mapEach(mapped.data(), mapped.size(), colorRange);
    if (!mapByMultiplication(words, count, colorRange, bounds, mapped)) {
        mapByTable(words, count, bounds, mapped);
    }
}

} // namespace DataObjects::Private
