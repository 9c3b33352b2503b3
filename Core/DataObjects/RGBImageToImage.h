// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/RGBImageBuffer.h"

namespace DataObjects
{

/// Rgb16::Intensity() of each pixel as T, clamped and truncated where T is an integer type. Mask, scales,
/// attributes and scalar fields are copied. For the six element types.
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT Image<T>
createMonochromeImageFromRGBImage(const RGBImage& image);

/// \name Mosaics
///
/// What a camera behind a colour filter sees, in the `unsigned short` pixels of one plane: each pixel adds
/// its components to the nearest pixels that have these colours, so that sums of up to nine pixels wrap at 16
/// bits. This loses information, and createRGBImageFromImage does not bring back the image: whoever needs
/// the pixels takes the single channels (RGBImage::RedImage() and its kin), and whoever needs a picture takes
/// createRGB32BufferFromRGBImageBuffer.
///
/// \param pattern the code of the phase, which becomes the attribute `RGBFrame`: 1, 257, 513 or 769 for the
///        first red pixel at (0, 0), (1, 0), (0, 1) or (1, 1)
/// \throws RTE::VerificationFailed "Invalid RGBFrame attribute: " and the number for another code, "Image to
///         small. Needs to be at least 2x2"
/// \{

/// With mask, scales, scalar fields and attributes.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT Image<unsigned short>
createBayerPatternImageFromRGBImage(const RGBImage& image, int pattern);
/// Of each frame, with name and global attributes.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT ImageBuffer<unsigned short>
createBayerPatternBufferFromRGBImageBuffer(const RGBImageBuffer& buffer, int pattern);
/// \}

#define DATAOBJECTS_EXTERN_MONOCHROME(type, number, name)                                                    \
    extern template DATAOBJECTS_DATAOBJECTS_EXPORT Image<type> createMonochromeImageFromRGBImage<type>(      \
        const RGBImage&);
DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_EXTERN_MONOCHROME)
#undef DATAOBJECTS_EXTERN_MONOCHROME

} // namespace DataObjects
