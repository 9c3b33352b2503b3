// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Buffer.h"

#include <QStringList>

#include <functional>
#include <optional>
#include <set>

namespace Qf
{

/// What counts as a difference.
struct DiffRules
{
    /// Without one of both, pixels are equal when each bit is; with them as numbers, when they differ by at
    /// most tolerance + relative * the larger magnitude, or both are no number. Masks and flags stay exact.
    std::optional<double> tolerance;
    std::optional<double> relative;
    /// Of `ignorableAspects`.
    std::set<std::string> ignored;

    [[nodiscard]] bool isExact() const { return !tolerance && !relative; }
    [[nodiscard]] bool compares(const std::string& aspect) const { return ignored.count(aspect) == 0; }
};

/// name, attributes, scales, masks, type.
[[nodiscard]] const std::vector<std::string>& ignorableAspects();

/// Pixels of a plane that differ.
struct PixelDifference
{
    unsigned long long count = 0;
    unsigned long long total = 0;
    /// Of the pixel that differs most; infinite where one is no number, 0 where only bits differ.
    double largest = 0.0;
    unsigned long long x = 0;
    unsigned long long y = 0;
};

/// One thing that differs, with what either side has.
struct Difference
{
    /// None for the buffer.
    std::optional<unsigned int> frame;
    /// Empty for the frame itself.
    QString component;
    std::optional<unsigned int> z;
    /// "width", "scale x", "attribute time", "pixels".
    QString what;
    QString a;
    QString b;
    std::optional<PixelDifference> pixels;
};

using DifferenceSink = std::function<void(const Difference&)>;

/// Name, attributes.
void compareBuffers(const BufferApi::I_Buffer& a, const BufferApi::I_Buffer& b, const DiffRules& rules,
                    const DifferenceSink& sink);

/// Everything of two frames; the order of their components does not count.
void compareFrames(unsigned int number, const BufferApi::I_Frame& a, const BufferApi::I_Frame& b,
                   const DiffRules& rules, const DifferenceSink& sink);

/// "frame 3, PIXEL: 12 of 1310720 pixels, most by 4 at (17, 5): 100 != 104".
[[nodiscard]] QString lineOf(const Difference& difference);

} // namespace Qf
