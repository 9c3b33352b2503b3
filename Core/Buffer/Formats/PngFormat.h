// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/FileFormat.h"

namespace BufferApi::Formats
{

/// PNG. Gray pixels of up to 8 bits and palettes of grays are bytes, 16 bits words, colours of 8 bits packed
/// colour. An alpha channel is taken when all its pixels are opaque. Written is one frame of bytes, words or
/// packed colour; everything else is refused. Format: https://www.w3.org/TR/png-3/
[[nodiscard]] std::unique_ptr<const FileFormat> createPngFormat();

} // namespace BufferApi::Formats
