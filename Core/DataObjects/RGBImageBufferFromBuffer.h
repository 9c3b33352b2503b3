// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/RGBImageBuffer.h"

namespace DataObjects
{

/// \name All frames as colour images
/// Each frame is read as createRGBImageFromBuffer and createRGBImageFromImage do and raises what they raise;
/// name and global attributes are copied. Without frames the result has none.
/// \throws RTE::VerificationFailed "RGB image buffer doesn't support multiply z planes." for a frame whose
///         depth is not 1
/// \{
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT RGBImageBuffer
createRGBImageBufferFromBuffer(const BufferApi::I_Buffer& buffer);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT RGBImageBuffer
createRGBImageBufferFromImageBuffer(const ImageBufferVariant& buffer);
/// \}

} // namespace DataObjects
