// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/RGBImage.h"

namespace DataObjects
{

/// The colours of an `unsigned short` image that is a mosaic (isBayerPatternImage), with mask, scales, scalar
/// fields and attributes, but for `RGBFrame`.
///
/// A component that a pixel does not have is the truncated mean of the nearest pixels that have it.
/// \throws RTE::VerificationFailed "not a rgb frame" for an image that is no mosaic, "Invalid RGB image type"
///         for one of another pixel type, "Invalid RGBFrame attribute: " and the number for a code other than
///         1, 257, 513 and 769, "Image to small. Needs to be at least 2x2"
/// \throws RTE::Exception "Unsupported image type" unless the image has one of the six types
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT RGBImage createRGBImageFromImage(const ImageVariant& image);

} // namespace DataObjects
