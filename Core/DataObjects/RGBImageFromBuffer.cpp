// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/RGBImageFromBuffer.h"

#include "Core/DataObjects/BayerPattern.h"
#include "Core/DataObjects/BayerTransformer.h"
#include "Core/DataObjects/BufferAttributes.h"
#include "Core/DataObjects/BufferLibDataAccess.h"
#include "Core/DataObjects/FrameWriting.h"
#include "Core/DataObjects/ImageFrameAccess.h"
#include "Core/DataObjects/ImageFromBuffer.h"
#include "Core/DataObjects/MaskFromBuffer.h"
#include "Core/DataObjects/RGBImageParts.h"
#include "Core/DataObjects/ScalarFieldFromFrame.h"
#include "Core/DataObjects/VisitImageType.h"

namespace DataObjects
{

namespace
{

using BufferApi::RgbQuad;
using Size = Math::Size2T<unsigned int>;

const char* const invalidFrame = "Invalid RGB frame";
const char* const invalidType = "Invalid RGB image type";

Mask ownMask(const BufferApi::I_Frame& frame, unsigned int z)
{
    Mask mask = Private::GetOrCreateMask(frame, z, false);
    return mask.HasOwnerShip() ? Mask(std::move(mask)) : Mask(std::as_const(mask));
}

/// \param frame is only read
RGBImage fromPackedColour(BufferApi::I_Frame& frame, unsigned int z)
{
    const BufferApi::I_PlaneBase* const plane = Private::findPixelPlane(frame, z);
    RTE::verify(plane != nullptr && BufferApi::IsOfType<RgbQuad>(*plane), invalidFrame);
    // Planes out of a file need not have the size of their frame.
    const Size size(frame.GetWidth(), frame.GetHeight());
    RTE::verify(Size(plane->GetWidth(), plane->GetHeight()) == size, invalidFrame);
    Mask mask = ownMask(frame, z);
    RTE::verify(mask.GetSize() == size, invalidFrame);
    const auto* const quads = static_cast<const RgbQuad*>(plane->GetData());
    RGBImage image(std::move(mask));
    RTE::verify(quads != nullptr || image.empty(), invalidFrame);
    Private::fromQuads(quads, image.size(), image.GetRawPointer());
    Private::copyScales(frame, image);
    image.SetAttributes(BufferAttributes(frame));
    image.GetScalarFields().DeepCopyFrom(*GetScalarFields(frame, z));
    return image;
}

} // namespace

RGBImage createRGBImageFromImage(const ImageVariant& image)
{
    Private::verifyNotMovedFrom(image);
    RTE::verify(isBayerPatternImage(image), "not a rgb frame");
    Private::verifyImageType(image.GetDataType());
    RTE::verify(static_cast<int>(image.GetDataType()) == PixelTypes::number<unsigned short>, invalidType);
    const auto& mosaic = static_cast<const Image<unsigned short>&>(image);
    Private::verifyHasPixels(mosaic);
    return BayerTransformer(mosaic.GetAttributes()).toColour(mosaic);
}

RGBImage createRGBImageFromBuffer(const BufferApi::I_Buffer& buffer, unsigned int frame, unsigned int z)
{
    BufferApi::I_Frame* const found = buffer.GetFrame(frame);
    if (dynamic_cast<BufferApi::I_FrameRGB32*>(found) != nullptr) {
        return fromPackedColour(*found, z);
    }
    const BufferApi::I_FrameImage& image = Private::getImageFrame(buffer, frame, invalidFrame);
    RTE::verify(image.GetDataType() == BufferApi::DT_WORD, invalidType);
    const bool isMosaic = isBayerPatternImage(image) && Private::findPixelPlane(image, z) != nullptr;
    RTE::verify(isMosaic, invalidFrame);
    return createRGBImageFromImage(GetImageT<unsigned short>(image, z));
}

} // namespace DataObjects
