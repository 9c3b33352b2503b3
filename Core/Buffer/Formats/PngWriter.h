// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/FileFormat.h"

namespace BufferApi::Formats
{

/// Takes one frame of depth 1 with bytes, words or packed colour.
[[nodiscard]] std::unique_ptr<FrameWriter> createPngWriter(const OutputPath& path);

} // namespace BufferApi::Formats
