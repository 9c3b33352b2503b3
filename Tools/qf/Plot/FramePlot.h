// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Tools/qf/Plot/Plot.h"
#include "Tools/qf/Plot/ValueRange.h"

#include "Core/Buffer/I_Frame.h"

#include <QRect>

namespace Qf
{

/// What of a frame is drawn, and how.
struct FramePlotOptions
{
    /// Empty for the pixels.
    QString component;
    unsigned int z = 0;
    /// In pixels; empty for the whole plane.
    QRect region;
    /// Empty for the colours of a mosaic, gray with integers and viridis with floating-point numbers.
    QString colorMap;
    /// In the unit of the component's scale; without it the range follows from the values.
    std::optional<ValueRange> range;
    QString title;
};

/// A component's plane in colours, with axes from the frame's scales and a colour bar from the component's.
///
/// Row 0 is the top one. Pixels that the frame's mask rejects, and those that are no number, stay blank.
/// \throws RTE::InvalidArgumentError, RTE::OutOfRangeError when the frame has no such component, plane or
///         region
[[nodiscard]] Plot plotOfFrame(const BufferApi::I_Frame& frame, const FramePlotOptions& options);

} // namespace Qf
