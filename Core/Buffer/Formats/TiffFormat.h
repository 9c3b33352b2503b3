// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/FileFormat.h"

namespace BufferApi::Formats
{

/// TIFF and BigTIFF, a frame for each page. Read are gray pixels of up to 16 and of 32 bits, floats, palettes
/// and colours of 8 bits, in strips or tiles, stored as they are or with LZW, deflate or PackBits. Signed
/// bytes and words become `DT_INT32`. An alpha channel is taken when all its pixels are opaque.
///
/// Written are frames of depth 1 that have nothing but pixels, in strips; with the option "PackType" 0 as
/// they are, else with deflate behind a predictor; as BigTIFF where 4 GiB do not suffice. Scales, attributes
/// and names stand in the description of the first page, for others as OME-XML, for us as FrameRecord.h
/// tells. Format: https://www.itu.int/itudoc/itu-t/com16/tiff-fx/docs/tiff6.pdf
[[nodiscard]] std::unique_ptr<const FileFormat> createTiffFormat();

} // namespace BufferApi::Formats
