// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/FileFormat.h"

namespace BufferApi::Formats
{

/// Files of more bytes are BigTIFF.
inline constexpr unsigned long long largestClassicTiff = 0xFFFFFFFF;

/// Takes frames of depth 1 that have nothing but pixels, one page each.
/// \param isPacked deflate behind a predictor, or pixels as they are
[[nodiscard]] DATAOBJECTS_BUFFER_EXPORT std::unique_ptr<FrameWriter>
createTiffWriter(const OutputPath& path, bool isPacked,
                 unsigned long long largestClassic = largestClassicTiff);

} // namespace BufferApi::Formats
