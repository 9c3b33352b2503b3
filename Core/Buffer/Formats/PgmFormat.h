// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/FileFormat.h"

namespace BufferApi::Formats
{

/// Portable graymaps, binary (P5, one or more images) and plain (P2), read only: bytes up to a maximum value
/// of 255, words above. Format: https://netpbm.sourceforge.net/doc/pgm.html
[[nodiscard]] std::unique_ptr<const FileFormat> createPgmFormat();

} // namespace BufferApi::Formats
