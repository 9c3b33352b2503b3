// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/FileFormat.h"

namespace BufferApi::Formats
{

/// TIFF and BigTIFF, a frame for each page. Read are gray pixels of up to 16 and of 32 bits, floats, palettes
/// and colours of 8 bits, in strips or tiles, stored as they are or with LZW, deflate or PackBits. Signed
/// bytes and words become `DT_INT32`. An alpha channel is taken when all its pixels are opaque. Format:
/// https://www.itu.int/itudoc/itu-t/com16/tiff-fx/docs/tiff6.pdf
[[nodiscard]] std::unique_ptr<const FileFormat> createTiffFormat();

} // namespace BufferApi::Formats
