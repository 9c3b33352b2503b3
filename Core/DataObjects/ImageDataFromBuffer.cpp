// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageDataFromBuffer.h"

#include "Core/DataObjects/BufferLibDataAccess.h"
#include "Core/DataObjects/ImageFrameAccess.h"
#include "Core/DataObjects/Latin1.h"
#include "Core/DataObjects/TypedScalars.h"

namespace DataObjects
{

namespace
{

using BufferApi::I_Buffer;
using BufferApi::I_Frame;
using BufferApi::I_FrameImage;
using BufferApi::I_PlaneBase;

const char* const notImage = "Frame type is not image.";
const char* const variantNotImage = "Frame type is not an image.";

template <typename T>
void verifyType(const I_PlaneBase& plane)
{
    RTE::verify(BufferApi::IsOfType<T>(plane), "Pixel-plane of given frame has not the required type");
}

I_PlaneBase& pixelPlane(const I_FrameImage& frame, unsigned int z)
{
    I_PlaneBase* const plane = Private::findPixelPlane(frame, z);
    if (plane == nullptr) {
        RTE::raise(RTE::VerificationFailed(QStringLiteral("Invalid plane-index %1").arg(z)));
    }
    return *plane;
}

I_PlaneBase& typedScalarPlane(const I_Frame& frame, const std::string& name, unsigned int z)
{
    const BufferApi::I_Component* const component = Private::findTypedScalar(frame, name);
    if (component == nullptr) {
        RTE::raise(RTE::VerificationFailed(
            QStringLiteral("No typed scalar of name '%1' found.").arg(Private::fromLatin1(name))));
    }
    return Private::typedScalarPlane(*component, z);
}

/// The pixels in the frame's type, taken out of the plane when `Frame` is no reference.
template <typename Frame>
std::unique_ptr<ImageDataVariant> getVariant(Frame&& frame, unsigned int z)
{
    const auto get = [&](auto tag) -> std::unique_ptr<ImageDataVariant> {
        using T = typename decltype(tag)::type;
        return std::make_unique<ImageData<T>>(GetImageDataT<T>(std::forward<Frame>(frame), z));
    };
    return Private::visitFrameType(frame, get, "BufferApi::DT_RGB not supported yet.",
                                   "Input frame has unsupported data type");
}

/// A view out of a const object is handed out by a const type only.
std::unique_ptr<const ImageDataVariant> getConstVariant(const I_FrameImage& frame, unsigned int z)
{
    return getVariant(const_cast<I_FrameImage&>(frame), z);
}

} // namespace

template <typename T>
ImageData<T> GetImageDataT(I_PlaneBase& plane)
{
    verifyType<T>(plane);
    return {static_cast<T*>(plane.GetData()), plane.GetWidth(), plane.GetHeight(), false};
}

template <typename T>
ImageData<T> GetImageDataT(I_PlaneBase&& plane)
{
    verifyType<T>(plane);
    const Math::Size2T<unsigned int> size(plane.GetWidth(), plane.GetHeight());
    return {static_cast<T*>(plane.ReleaseData()), size, true};
}

template <typename T>
ImageData<T> GetImageDataT(I_FrameImage& frame, unsigned int z)
{
    return GetImageDataT<T>(pixelPlane(frame, z));
}

template <typename T>
ImageData<T> GetImageDataT(I_FrameImage&& frame, unsigned int z)
{
    return GetImageDataT<T>(std::move(pixelPlane(frame, z)));
}

template <typename T>
ImageData<T> GetImageDataT(I_Buffer& buffer, unsigned int frame, unsigned int z)
{
    return GetImageDataT<T>(Private::getImageFrame(buffer, frame, notImage), z);
}

template <typename T>
ImageData<T> GetImageDataT(I_Buffer&& buffer, unsigned int frame, unsigned int z)
{
    return GetImageDataT<T>(std::move(Private::getImageFrame(buffer, frame, notImage)), z);
}

template <typename T>
ImageData<T> GetImageDataFromTypedScalarT(I_Frame& frame, const std::string& name, unsigned int z)
{
    return GetImageDataT<T>(typedScalarPlane(frame, name, z));
}

template <typename T>
ImageData<T> GetImageDataFromTypedScalarT(I_Frame&& frame, const std::string& name, unsigned int z)
{
    return GetImageDataT<T>(std::move(typedScalarPlane(frame, name, z)));
}

std::unique_ptr<ImageDataVariant> GetImageData(I_FrameImage& frame, unsigned int z)
{
    return getVariant(frame, z);
}

std::unique_ptr<ImageDataVariant> GetImageData(I_FrameImage&& frame, unsigned int z)
{
    return getVariant(std::move(frame), z);
}

std::unique_ptr<const ImageDataVariant> GetImageData(const I_FrameImage& frame, unsigned int z)
{
    return getConstVariant(frame, z);
}

std::unique_ptr<ImageDataVariant> GetImageData(I_Buffer& buffer, unsigned int frame, unsigned int z)
{
    return getVariant(Private::getImageFrame(buffer, frame, variantNotImage), z);
}

std::unique_ptr<ImageDataVariant> GetImageData(I_Buffer&& buffer, unsigned int frame, unsigned int z)
{
    return getVariant(std::move(Private::getImageFrame(buffer, frame, variantNotImage)), z);
}

std::unique_ptr<const ImageDataVariant> GetImageData(const I_Buffer& buffer, unsigned int frame,
                                                     unsigned int z)
{
    return getConstVariant(Private::getImageFrame(buffer, frame, variantNotImage), z);
}

#define DATAOBJECTS_INSTANTIATE(type, number, name)                                                          \
    template ImageData<type> GetImageDataT(I_PlaneBase&);                                                    \
    template ImageData<type> GetImageDataT(I_PlaneBase&&);                                                   \
    template ImageData<type> GetImageDataT(I_FrameImage&, unsigned int);                                     \
    template ImageData<type> GetImageDataT(I_FrameImage&&, unsigned int);                                    \
    template ImageData<type> GetImageDataT(I_Buffer&, unsigned int, unsigned int);                           \
    template ImageData<type> GetImageDataT(I_Buffer&&, unsigned int, unsigned int);                          \
    template ImageData<type> GetImageDataFromTypedScalarT(I_Frame&, const std::string&, unsigned int);       \
    template ImageData<type> GetImageDataFromTypedScalarT(I_Frame&&, const std::string&, unsigned int);
DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_INSTANTIATE)
#undef DATAOBJECTS_INSTANTIATE

} // namespace DataObjects
