// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Frame.h"
#include "Core/Buffer/LazyPlane.h"

#include <memory>

namespace BufferApi::Formats
{

/// An image frame of depth 1 whose pixels, gray or `DT_RGB`, load from the source when they are asked for.
[[nodiscard]] std::unique_ptr<I_Frame> lazyImageFrame(E_DataType type, unsigned int width,
                                                      unsigned int height,
                                                      std::shared_ptr<const PlaneSource> pixels);

} // namespace BufferApi::Formats
