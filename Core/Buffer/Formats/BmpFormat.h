// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/FileFormat.h"

namespace BufferApi::Formats
{

/// Windows bitmaps of 1, 4, 8, 16, 24 and 32 bits without run-length compression, read only. A palette of
/// grays gives bytes, everything else packed colour; a fourth channel is passed over. Format:
/// https://learn.microsoft.com/windows/win32/gdi/bitmap-storage
[[nodiscard]] std::unique_ptr<const FileFormat> createBmpFormat();

} // namespace BufferApi::Formats
