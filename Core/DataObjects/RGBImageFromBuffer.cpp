// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/RGBImageFromBuffer.h"

#include "Core/DataObjects/BayerPattern.h"
#include "Core/DataObjects/BayerTransformer.h"
#include "Core/DataObjects/VisitImageType.h"

namespace DataObjects
{

namespace
{

constexpr const char* otherType = "Invalid RGB image type";

} // namespace

RGBImage createRGBImageFromImage(const ImageVariant& image)
{
    RTE::verify(isBayerPatternImage(image), "not a rgb frame");
    Private::verifyImageType(image.GetDataType());
    RTE::verify(static_cast<int>(image.GetDataType()) == PixelTypes::number<unsigned short>, otherType);
    return BayerTransformer(image.GetAttributes()).toColour(static_cast<const Image<unsigned short>&>(image));
}

} // namespace DataObjects
