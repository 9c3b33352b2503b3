// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Tools/qf/BufferDifference.h"

#include "Core/Buffer/I_Plane.h"

namespace Qf
{

/// Compares two planes of one size, both colours or neither; nothing where all pixels agree. Planes of
/// different types are compared as numbers.
[[nodiscard]] std::optional<PixelDifference>
comparePixels(const BufferApi::I_PlaneBase& a, const BufferApi::I_PlaneBase& b, const DiffRules& rules);

/// The value of a pixel, exactly.
[[nodiscard]] QString pixelText(const BufferApi::I_PlaneBase& plane, unsigned long long x,
                                unsigned long long y);

} // namespace Qf
