// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/RGBImage.h"

namespace BufferApi
{
class I_Buffer;
}

namespace DataObjects
{

/// \file
/// Colour images of mosaics and of frames. They own all their parts: mask, scales, attributes and scalar
/// fields are copies.
///
/// A mosaic (isBayerPatternImage) is an `unsigned short` image of one plane. A component that a pixel of it
/// does not have becomes the truncated mean of the nearest pixels that have it, and the attribute `RGBFrame`
/// does not come along.
///
/// \throws RTE::VerificationFailed for a mosaic: "Invalid RGBFrame attribute: " and the number for a code
///         other than 1, 257, 513 and 769, "Image to small. Needs to be at least 2x2"

/// \throws RTE::VerificationFailed "not a rgb frame" for an image that is no mosaic, "Invalid RGB image type"
///         for one of another pixel type, "data-pointer is null" for one that was moved from or gave its
///         pixels up
/// \throws RTE::Exception "Unsupported image type" unless the image has one of the six types
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT RGBImage createRGBImageFromImage(const ImageVariant& image);

/// A frame of packed colour, whose components are 0 to 255, or a mosaic; the buffer stays as it is.
/// \throws RTE::VerificationFailed "Invalid RGB image type" for an image frame of another type than `DT_WORD`
///         and `DT_RGB`, "Invalid RGB frame" for all else that is neither, and when there is no such frame or
///         plane, or planes have not the size of their frame
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT RGBImage
createRGBImageFromBuffer(const BufferApi::I_Buffer& buffer, unsigned int frame, unsigned int z);

} // namespace DataObjects
