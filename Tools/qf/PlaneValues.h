// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Plane.h"

#include <vector>

namespace Qf
{

/// All elements row by row, as they are stored; of RGB the channels red, green, blue of each pixel.
[[nodiscard]] std::vector<double> planeValues(const BufferApi::I_PlaneBase& plane);

/// Red, green, blue of each pixel of an RGB plane.
[[nodiscard]] std::vector<unsigned char> rgbChannels(const BufferApi::I_PlaneBase& plane);

} // namespace Qf
