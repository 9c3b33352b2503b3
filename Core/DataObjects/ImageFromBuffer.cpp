// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageFromBuffer.h"

#include "Core/DataObjects/BufferAttributes.h"
#include "Core/DataObjects/BufferLibDataAccess.h"
#include "Core/DataObjects/ImageDataFromBuffer.h"
#include "Core/DataObjects/ImageFrameAccess.h"
#include "Core/DataObjects/ImageParts.h"
#include "Core/DataObjects/LazyMask.h"
#include "Core/DataObjects/MaskFromBuffer.h"
#include "Core/DataObjects/ScalarFieldFromFrame.h"

namespace DataObjects
{

namespace
{

using BufferApi::I_Buffer;
using BufferApi::I_FrameImage;

const char* const notImage = "Frame type is not image.";
const char* const variantNotImage = "Frame type is not an image.";

template <typename Pointer>
auto& notNull(Pointer* object, const char* text,
              RTE::SourceLocation location = RTE::SourceLocation::current())
{
    RTE::verify(object != nullptr, text, location);
    return *object;
}

I_FrameImage& verified(I_FrameImage* frame)
{
    return notNull(frame, "Frame is NULL.");
}

I_Buffer& verified(const I_Buffer* buffer)
{
    return const_cast<I_Buffer&>(notNull(buffer, "Buffer is NULL"));
}

/// The image in the frame's type, by moving when `Frame` is no reference.
template <typename Frame>
std::unique_ptr<ImageVariant> getVariant(Frame&& frame, unsigned int z, bool requireMask)
{
    const auto get = [&](auto tag) -> std::unique_ptr<ImageVariant> {
        using T = typename decltype(tag)::type;
        return std::make_unique<Image<T>>(GetImageT<T>(std::forward<Frame>(frame), z, requireMask));
    };
    return Private::visitFrameType(frame, get, "RGB image is not supported.",
                                   "Image has unsupported data type");
}

/// True when the image needs a mask of its own, which costs as much as many a pass over its pixels and is
/// made when somebody asks for it.
bool masksItself(const I_FrameImage& frame, bool requireMask)
{
    return !requireMask && !frame.HasMask();
}

Math::Size2T<unsigned int> sizeOf(const I_FrameImage& frame)
{
    return {frame.GetWidth(), frame.GetHeight()};
}

/// The pixels of a view, which has the size of the frame. A plane out of a file need not have it.
template <typename T>
T* pixelsOf(const I_FrameImage& frame, unsigned int z)
{
    T* const pixels = Private::GetPlaneData<T>(frame, z);
    const BufferApi::I_PlaneBase& plane = *Private::findPixelPlane(frame, z);
    RTE::verify(Math::Size2T<unsigned int>(plane.GetWidth(), plane.GetHeight()) == sizeOf(frame),
                "Size of image and image plane must be equal.");
    return pixels;
}

std::unique_ptr<MaskStrategy> allValidOnDemand(const I_FrameImage& frame)
{
    return std::make_unique<LazyMask>(frame.GetWidth(), frame.GetHeight(), true);
}

template <typename T>
Image<T> takePixelsAndMask(I_FrameImage& frame, unsigned int z, bool requireMask)
{
    ImageData<T> pixels = GetImageDataT<T>(std::move(frame), z);
    if (masksItself(frame, requireMask)) {
        RTE::verify(pixels.GetSize() == sizeOf(frame), "Mask has invalid size.");
        return Image<T>(std::move(pixels), allValidOnDemand(frame));
    }
    Mask mask = Private::MoveOrCreateMask(std::move(frame), z, requireMask);
    return Image<T>(std::move(pixels), std::move(mask));
}

} // namespace

template <typename T>
Image<T> GetImageT(I_FrameImage& frame, unsigned int z, bool requireMask)
{
    std::shared_ptr<ScalarFields> scalarFields = GetScalarFields(frame, z);
    auto attributes = std::make_shared<BufferAttributes>(frame);
    std::shared_ptr<Zt::LinearScale> scaleI = Private::GetScaleOnFrame(&frame, 3);
    std::shared_ptr<Zt::LinearScale> scaleZ = Private::GetScaleOnFrame(&frame, 2);
    std::shared_ptr<Zt::LinearScale> scaleY = Private::GetScaleOnFrame(&frame, 1);
    std::shared_ptr<Zt::LinearScale> scaleX = Private::GetScaleOnFrame(&frame, 0);
    std::shared_ptr<Mask> mask;
    if (!masksItself(frame, requireMask)) {
        mask = std::make_shared<Mask>(Private::GetOrCreateMask(frame, z, requireMask));
    }
    T* const pixels = pixelsOf<T>(frame, z);
    const Math::Size2T<unsigned int> size = sizeOf(frame);
    const bool isMaskOwn = mask == nullptr;
    if (isMaskOwn) {
        // Holds the place while the image is built; nobody looks at it.
        mask = std::make_shared<Mask>(reinterpret_cast<bool*>(pixels), size, false);
    }
    Image<T> image(pixels, size, std::move(mask), std::move(scaleX), std::move(scaleY), std::move(scaleZ),
                   std::move(scaleI), std::move(attributes), std::move(scalarFields));
    if (isMaskOwn) {
        image.ReplaceMaskStrategy(allValidOnDemand(frame));
    }
    return image;
}

template <typename T>
Image<T> GetImageT(I_FrameImage* frame, unsigned int z, bool requireMask)
{
    return GetImageT<T>(verified(frame), z, requireMask);
}

template <typename T>
const Image<T> GetImageT(const I_FrameImage& frame, unsigned int z)
{
    return GetImageT<T>(const_cast<I_FrameImage&>(frame), z, false);
}

template <typename T>
Image<T> GetImageT(I_FrameImage&& frame, unsigned int z, bool requireMask)
{
    Image<T> image = takePixelsAndMask<T>(frame, z, requireMask);
    Private::assignScales(frame, image);
    image.GetAttributes().merge(BufferAttributes(frame));
    MoveScalarFieldFromFrame(image.GetScalarFields(), std::move(frame), z);
    return image;
}

template <typename T>
Image<T> GetImageT(I_Buffer& buffer, unsigned int frame, unsigned int z, bool requireMask)
{
    return GetImageT<T>(Private::getImageFrame(buffer, frame, notImage), z, requireMask);
}

template <typename T>
Image<T> GetImageT(I_Buffer* buffer, unsigned int frame, unsigned int z, bool requireMask)
{
    return GetImageT<T>(verified(buffer), frame, z, requireMask);
}

template <typename T>
const Image<T> GetImageT(const I_Buffer& buffer, unsigned int frame, unsigned int z)
{
    return GetImageT<T>(Private::getImageFrame(buffer, frame, notImage), z, false);
}

template <typename T>
const Image<T> GetImageT(const I_Buffer* buffer, unsigned int frame, unsigned int z)
{
    return GetImageT<T>(verified(buffer), frame, z, false);
}

template <typename T>
Image<T> GetImageT(I_Buffer&& buffer, unsigned int frame, unsigned int z, bool requireMask)
{
    return GetImageT<T>(std::move(Private::getImageFrame(buffer, frame, notImage)), z, requireMask);
}

std::unique_ptr<ImageVariant> GetImage(I_FrameImage& frame, unsigned int z, bool requireMask)
{
    return getVariant(frame, z, requireMask);
}

std::unique_ptr<ImageVariant> GetImage(I_FrameImage* frame, unsigned int z, bool requireMask)
{
    return getVariant(verified(frame), z, requireMask);
}

std::unique_ptr<const ImageVariant> GetImage(const I_FrameImage& frame, unsigned int z)
{
    return getVariant(const_cast<I_FrameImage&>(frame), z, false);
}

std::unique_ptr<ImageVariant> GetImage(I_FrameImage&& frame, unsigned int z, bool requireMask)
{
    return getVariant(std::move(frame), z, requireMask);
}

std::unique_ptr<ImageVariant> GetImage(I_Buffer& buffer, unsigned int frame, unsigned int z, bool requireMask)
{
    return getVariant(Private::getImageFrame(buffer, frame, variantNotImage), z, requireMask);
}

std::unique_ptr<ImageVariant> GetImage(I_Buffer* buffer, unsigned int frame, unsigned int z, bool requireMask)
{
    return GetImage(verified(buffer), frame, z, requireMask);
}

std::unique_ptr<const ImageVariant> GetImage(const I_Buffer& buffer, unsigned int frame, unsigned int z)
{
    return getVariant(Private::getImageFrame(buffer, frame, variantNotImage), z, false);
}

std::unique_ptr<const ImageVariant> GetImage(const I_Buffer* buffer, unsigned int frame, unsigned int z)
{
    return GetImage(verified(buffer), frame, z, false);
}

std::unique_ptr<ImageVariant> GetImage(I_Buffer&& buffer, unsigned int frame, unsigned int z,
                                       bool requireMask)
{
    return getVariant(std::move(Private::getImageFrame(buffer, frame, variantNotImage)), z, requireMask);
}

std::unique_ptr<ImageVariant> AttachMaskAndGetImage(I_FrameImage* frame, unsigned int z)
{
    notNull(frame, "ImageFrame is NULL").AddMask({});
    return GetImage(frame, z, true);
}

#define DATAOBJECTS_INSTANTIATE(type, number, name)                                                          \
    template Image<type> GetImageT(I_FrameImage&, unsigned int, bool);                                       \
    template Image<type> GetImageT(I_FrameImage*, unsigned int, bool);                                       \
    template const Image<type> GetImageT(const I_FrameImage&, unsigned int);                                 \
    template Image<type> GetImageT(I_FrameImage&&, unsigned int, bool);                                      \
    template Image<type> GetImageT(I_Buffer&, unsigned int, unsigned int, bool);                             \
    template Image<type> GetImageT(I_Buffer*, unsigned int, unsigned int, bool);                             \
    template const Image<type> GetImageT(const I_Buffer&, unsigned int, unsigned int);                       \
    template const Image<type> GetImageT(const I_Buffer*, unsigned int, unsigned int);                       \
    template Image<type> GetImageT(I_Buffer&&, unsigned int, unsigned int, bool);
DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_INSTANTIATE)
#undef DATAOBJECTS_INSTANTIATE

} // namespace DataObjects
