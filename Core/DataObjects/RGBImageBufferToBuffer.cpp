// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/RGBImageBufferToBuffer.h"

#include "Core/Common/AttributeNames.h"
#include "Core/DataObjects/BayerTransformer.h"
#include "Core/DataObjects/BufferLibDataAccess.h"
#include "Core/DataObjects/FrameWriting.h"
#include "Core/DataObjects/ImageMoveToBuffer.h"
#include "Core/DataObjects/MaskFromBuffer.h"
#include "Core/DataObjects/ScalarFieldFromFrame.h"

#include <algorithm>
#include <cmath>

namespace DataObjects
{

namespace
{

using BufferApi::RgbQuad;
using Private::FramePointer;

/// A buffer with name and global attributes, and the frame that `makeFrame` makes of each image.
template <typename MakeFrame>
std::unique_ptr<BufferApi::I_Buffer> bufferOf(const RGBImageBuffer& images, MakeFrame makeFrame)
{
    std::unique_ptr<BufferApi::I_Buffer> buffer(BufferApi::CreateBuffer());
    buffer->SetName(images.GetName());
    BufferAttributes(*buffer).merge(images.GetGlobalAttributes());
    for (const auto& image : images) {
        Private::addFrame(*buffer, makeFrame(*image));
    }
    return buffer;
}

/// By how many bits the components of all frames are shifted right to fit into bytes.
unsigned int shiftFor(const RGBImageBuffer& images)
{
    unsigned int depth = 8;
    for (const auto& image : images) {
        depth = std::max<unsigned int>(depth, image->GetBitDepth());
    }
    return depth - 8;
}

/// What tells of raw values follows their division by a power of two, after which none is above 255: a frame
/// whose attribute told of more would lose bits once more when it is read and written again.
void adaptToShift(BufferApi::I_Frame& frame, unsigned int shift)
{
    const double unit = std::exp2(shift);
    const Zt::LinearScale scale = frame.GetScaleI();
    frame.SetScaleI({scale.getFactor() * unit, scale.getOffset(), scale.getUnit(), scale.getDescription()});
    BufferAttributes attributes(frame);
    const AttributeValue maximum = attributes.attributeValue(Attr::cameraMaxIntensity);
    const double value = maximum.Count() == 1 ? maximum.value<double>() : 0;
    if (maximum.Count() == 1 && (shift > 0 || value > 255)) {
        attributes.remove(Attr::cameraMaxIntensity);
        attributes.set(Attr::cameraMaxIntensity, std::min(std::floor(value / unit), 255.0));
    }
}

FramePointer packedFrame(const RGBImage& image, unsigned int shift)
{
    FramePointer frame = Private::newFrame<RgbQuad>(image.GetSize(), 1);
    Private::toQuads(image.GetRawPointer(), image.size(), shift, Private::GetPlaneData<RgbQuad>(*frame, 0));
    if (!AllValuesValid(image)) {
        frame->AddMask({});
        GetMask(*frame, 0) = image.GetMask();
    }
    frame->SetScaleX(image.GetScaleX());
    frame->SetScaleY(image.GetScaleY());
    frame->SetScaleI(image.GetScaleI());
    BufferAttributes(*frame).merge(image.GetAttributes());
    adaptToShift(*frame, shift);
    GetScalarFields(*frame, 0)->DeepCopyFrom(image.GetScalarFields());
    return frame;
}

} // namespace

std::unique_ptr<BufferApi::I_Buffer> createBufferFromRGBImageBuffer(const RGBImageBuffer& buffer, int pattern)
{
    const BayerTransformer transformer(pattern);
    return bufferOf(buffer, [&](const RGBImage& image) {
        return FramePointer(
            CreateFrameFromImageT<unsigned short>(transformer.toMosaic(image), !AllValuesValid(image)));
    });
}

std::unique_ptr<BufferApi::I_Buffer> createRGB32BufferFromRGBImageBuffer(const RGBImageBuffer& buffer)
{
    const unsigned int shift = shiftFor(buffer);
    return bufferOf(buffer, [&](const RGBImage& image) { return packedFrame(image, shift); });
}

} // namespace DataObjects
