// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageToBuffer.h"

#include "Core/DataObjects/BufferLibDataAccess.h"
#include "Core/DataObjects/FrameWriting.h"
#include "Core/DataObjects/ScalarFieldFromFrame.h"
#include "Core/DataObjects/TypedScalars.h"
#include "Core/DataObjects/VisitImageType.h"

namespace DataObjects
{

namespace
{

using BufferApi::I_Buffer;
using BufferApi::I_FrameImage;
using Private::FramePointer;

const char* const otherSize = "Size of image and image plane must be equal.";

template <typename T>
FramePointer frameOf(const ImageData<T>& data)
{
    FramePointer frame = Private::newFrame<T>(data.GetSize(), 1);
    Private::copyPixels(data, *Private::findPixelPlane(*frame, 0));
    return frame;
}

template <typename T>
FramePointer frameOf(const Image<T>& image, bool withMask)
{
    Private::verifyNotMovedFrom(image);
    FramePointer frame = frameOf(image.GetImageData());
    if (withMask) {
        Private::addMasks({&image}, *frame);
    }
    Private::setScalesAndAttributes(image, *frame);
    GetScalarFields(*frame, 0)->DeepCopyFrom(image.GetScalarFields());
    return frame;
}

FramePointer frameOf(const ImageDataVariant& data)
{
    return Private::visitImageDataType(data.GetDataType(), [&](auto tag) {
        return frameOf(static_cast<const ImageData<typename decltype(tag)::type>&>(data));
    });
}

FramePointer frameOf(const ImageVariant& image, bool withMask)
{
    return Private::visitImageType(image.GetDataType(), [&](auto tag) {
        return frameOf(static_cast<const Image<typename decltype(tag)::type>&>(image), withMask);
    });
}

template <typename T>
bool isViewOf(const Image<T>& image, const I_FrameImage& frame, unsigned int z)
{
    const BufferApi::I_PlaneBase* const plane = Private::findPixelPlane(frame, z);
    return plane != nullptr && plane->GetData() == image.begin();
}

BufferApi::E_DataType storedType(E_DataType type) noexcept
{
    return PixelTypes::contains(static_cast<int>(type)) ? toBufferDataType(type) : BufferApi::DT_UNKNOWN;
}

} // namespace

template <typename T>
I_FrameImage* CreateFrameFromImageDataT(const ImageData<T>& data)
{
    return frameOf(data).release();
}

I_FrameImage* CreateFrameFromImageData(const ImageDataVariant& data)
{
    return frameOf(data).release();
}

template <typename T>
I_FrameImage* CreateFrameFromImageT(const Image<T>& image, bool withMask)
{
    return frameOf(image, withMask).release();
}

I_FrameImage* CreateFrameFromImage(const ImageVariant& image, bool withMask)
{
    return frameOf(image, withMask).release();
}

template <typename T>
std::unique_ptr<I_Buffer> CreateBufferFromImageDataT(const ImageData<T>& data)
{
    return Private::bufferOf(frameOf(data));
}

std::unique_ptr<I_Buffer> CreateBufferFromImageData(const ImageDataVariant& data)
{
    return Private::bufferOf(frameOf(data));
}

template <typename T>
std::unique_ptr<I_Buffer> CreateBufferFromImageT(const Image<T>& image, bool withMask)
{
    return Private::bufferOf(frameOf(image, withMask));
}

std::unique_ptr<I_Buffer> CreateBufferFromImage(const ImageVariant& image, bool withMask)
{
    return Private::bufferOf(frameOf(image, withMask));
}

template <typename T>
void CopyImageDataToFrameT(const ImageData<T>& data, I_FrameImage& frame, unsigned int z)
{
    const BufferApi::I_PlaneBase* const plane = Private::findPixelPlane(frame, z);
    RTE::verify(plane != nullptr, "Invalid destination plane.");
    RTE::verify(plane->GetWidth() == data.GetWidth() && plane->GetHeight() == data.GetHeight(), otherSize);
    RTE::verify(BufferApi::IsOfType<T>(*plane), "Date type of image and image plane must be equal.");
    Private::copyPixels(data, *plane);
}

template <typename T>
void CopyImageToFrameT(const Image<T>& image, I_FrameImage& frame, unsigned int z)
{
    Private::verifyNotMovedFrom(image);
    Private::assignScales(image, frame);
    if (isViewOf(image, frame, z)) {
        return;
    }
    CopyImageDataToFrameT(image.GetImageData(), frame, z);
    if (frame.HasMask()) {
        Private::copyMask(image, frame, z);
    }
    // An image of another plane has its attributes on this frame: they are read before they are cleared.
    BufferAttributes attributes(frame);
    Private::replaceAttributes(image.GetAttributes(), attributes);
    GetScalarFields(frame, 0)->DeepCopyFrom(image.GetScalarFields());
}

void CopyImageToFrame(const ImageVariant& image, I_FrameImage& frame, unsigned int z)
{
    Private::visitImageType(image.GetDataType(), [&](auto tag) {
        CopyImageToFrameT(static_cast<const Image<typename decltype(tag)::type>&>(image), frame, z);
    });
}

template <typename T>
void CopyImageDataToTypedScalarT(const ImageData<T>& data, BufferApi::I_Frame& frame, const std::string& name,
                                 unsigned int z)
{
    Private::copyToTypedScalar(data, frame, name, z, otherSize);
}

void CopyImageDataToTypedScalar(const ImageDataVariant& data, BufferApi::I_Frame& frame,
                                const std::string& name, unsigned int z)
{
    Private::visitImageDataType(data.GetDataType(), [&](auto tag) {
        CopyImageDataToTypedScalarT(CastImageDataTo<typename decltype(tag)::type>(data), frame, name, z);
    });
}

void CopyImageToTypedScalar(const ImageVariant& image, BufferApi::I_Frame& frame, const std::string& name,
                            unsigned int z)
{
    Private::verifyImageType(image.GetDataType());
    Private::verifyNotMovedFrom(image);
    CopyImageDataToTypedScalar(image.GetImageData(), frame, name, z);
}

BufferApi::E_DataType GetImageDataType(const ImageDataVariant& data) noexcept
{
    return storedType(data.GetDataType());
}

BufferApi::E_DataType GetImageDataType(const ImageVariant& image) noexcept
{
    return storedType(image.GetDataType());
}

#define DATAOBJECTS_INSTANTIATE(type, number, name)                                                          \
    template I_FrameImage* CreateFrameFromImageDataT(const ImageData<type>&);                                \
    template I_FrameImage* CreateFrameFromImageT(const Image<type>&, bool);                                  \
    template std::unique_ptr<I_Buffer> CreateBufferFromImageDataT(const ImageData<type>&);                   \
    template std::unique_ptr<I_Buffer> CreateBufferFromImageT(const Image<type>&, bool);                     \
    template void CopyImageDataToFrameT(const ImageData<type>&, I_FrameImage&, unsigned int);                \
    template void CopyImageToFrameT(const Image<type>&, I_FrameImage&, unsigned int);                        \
    template void CopyImageDataToTypedScalarT(const ImageData<type>&, BufferApi::I_Frame&,                   \
                                              const std::string&, unsigned int);
DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_INSTANTIATE)
#undef DATAOBJECTS_INSTANTIATE

} // namespace DataObjects
