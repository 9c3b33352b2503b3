// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/TiffPage.h"

namespace BufferApi::Formats
{

/// Turns a row of stored samples into pixels of the page's type.
/// \param sample the first one that stands in the row: not 0 only when each has a plane of its own
/// \param stored begins at a byte that is aligned for the samples if they are whole bytes
/// \param pixels of the plane, `count` of them
/// \returns false when a pixel is not opaque
[[nodiscard]] bool convertTiffRow(const TiffPage& page, unsigned int sample, const unsigned char* stored,
                                  unsigned int count, void* pixels);

/// Puts rows and columns of a whole plane in the order top to bottom and left to right.
void orientTiffPixels(const TiffPage& page, void* pixels);

} // namespace BufferApi::Formats
