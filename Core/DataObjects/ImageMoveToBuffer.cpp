// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageMoveToBuffer.h"

#include "Core/DataObjects/BufferLibDataAccess.h"
#include "Core/DataObjects/FrameWriting.h"
#include "Core/DataObjects/ScalarFieldToFrame.h"
#include "Core/DataObjects/VisitImageType.h"

namespace DataObjects
{

namespace
{

using BufferApi::I_Buffer;
using BufferApi::I_FrameImage;
using Private::FramePointer;

void setDefaultScales(I_FrameImage& frame)
{
    frame.SetScaleX(Zt::LinearScale(Zt::ScalePreset::X));
    frame.SetScaleY(Zt::LinearScale(Zt::ScalePreset::Y));
    frame.SetScaleZ(Zt::LinearScale(Zt::ScalePreset::Z));
    frame.SetScaleI(Zt::LinearScale(Zt::ScalePreset::I));
}

template <typename T>
FramePointer pixelsMoved(ImageData<T>& data)
{
    auto array = Private::releaseArrays<T>(std::vector{&data}, data.GetSize());
    if (!array.empty()) {
        return Private::newFrame<T>(data.GetSize(), std::move(array));
    }
    FramePointer frame = Private::newFrame<T>(data.GetSize(), 1);
    Private::copyPixels(data, *Private::findPixelPlane(*frame, 0));
    return frame;
}

template <typename T>
FramePointer frameOf(ImageData<T>& data)
{
    FramePointer frame = pixelsMoved(data);
    setDefaultScales(*frame);
    return frame;
}

template <typename T>
FramePointer frameOf(Image<T>& image, bool withMask)
{
    Private::verifyNotMovedFrom(image);
    FramePointer frame = frameOf(image.GetImageData());
    if (withMask) {
        Private::moveMasks({&image}, *frame);
    }
    Private::setScalesAndAttributes(image, *frame);
    MoveScalarFieldsToFrame(std::move(image.GetScalarFields()), *frame);
    return frame;
}

FramePointer frameOf(ImageDataVariant& data)
{
    return Private::visitImageDataType(data.GetDataType(), [&](auto tag) {
        return frameOf(static_cast<ImageData<typename decltype(tag)::type>&>(data));
    });
}

FramePointer frameOf(ImageVariant& image, bool withMask)
{
    return Private::visitImageType(image.GetDataType(), [&](auto tag) {
        return frameOf(static_cast<Image<typename decltype(tag)::type>&>(image), withMask);
    });
}

} // namespace

template <typename T>
I_FrameImage* CreateFrameFromImageDataT(ImageData<T>&& data)
{
    return frameOf(data).release();
}

I_FrameImage* CreateFrameFromImageData(ImageDataVariant&& data)
{
    return frameOf(data).release();
}

template <typename T>
I_FrameImage* CreateFrameFromImageT(Image<T>&& image, bool withMask)
{
    return frameOf(image, withMask).release();
}

I_FrameImage* CreateFrameFromImage(ImageVariant&& image, bool withMask)
{
    return frameOf(image, withMask).release();
}

std::unique_ptr<I_Buffer> CreateBufferFromImageData(ImageDataVariant&& data)
{
    return Private::bufferOf(frameOf(data));
}

std::unique_ptr<I_Buffer> CreateBufferFromImage(ImageVariant&& image, bool withMask)
{
    return Private::bufferOf(frameOf(image, withMask));
}

#define DATAOBJECTS_INSTANTIATE(type, number, name)                                                          \
    template I_FrameImage* CreateFrameFromImageDataT(ImageData<type>&&);                                     \
    template I_FrameImage* CreateFrameFromImageT(Image<type>&&, bool);
DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_INSTANTIATE)
#undef DATAOBJECTS_INSTANTIATE

} // namespace DataObjects
