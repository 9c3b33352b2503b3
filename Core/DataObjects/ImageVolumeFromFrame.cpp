// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageVolumeFromFrame.h"

#include "Core/DataObjects/ImageFrameAccess.h"
#include "Core/DataObjects/ImageFromBuffer.h"

namespace DataObjects
{

namespace
{

using BufferApi::I_Buffer;
using BufferApi::I_FrameImage;

I_FrameImage& frameOf(const I_Buffer& buffer, unsigned int index)
{
    RTE::verify(index < buffer.GetFrameCount(), "Frame index out of bounds");
    return Private::getImageFrame(buffer, index, "Frame type of buffer is not image");
}

void verifyMask(const I_FrameImage& frame, bool requireMask)
{
    RTE::verify(!requireMask || frame.HasMask(), "Frame requires a mask, but has no mask.");
}

/// A volume of what `getPlane` makes of each z.
template <typename T, typename GetPlane>
ImageVolume<T> volumeOf(const I_FrameImage& frame, GetPlane getPlane)
{
    std::vector<std::shared_ptr<Image<T>>> planes;
    planes.reserve(frame.GetDepth());
    for (unsigned int z = 0; z < frame.GetDepth(); ++z) {
        planes.push_back(std::make_shared<Image<T>>(getPlane(z)));
    }
    return ImageVolume<T>(std::move(planes));
}

/// The volume in the frame's type, by moving when `Frame` is no reference.
template <typename Frame>
std::unique_ptr<ImageVolumeVariant> getVariant(Frame&& frame, bool requireMask)
{
    const auto get = [&](auto tag) -> std::unique_ptr<ImageVolumeVariant> {
        using T = typename decltype(tag)::type;
        return std::make_unique<ImageVolume<T>>(GetImageVolumeT<T>(std::forward<Frame>(frame), requireMask));
    };
    return Private::visitFrameType(frame, get, "RGB image is not supported.",
                                   "Image has unsupported data type");
}

} // namespace

template <typename T>
ImageVolume<T> GetImageVolumeT(I_FrameImage& frame, bool requireMask)
{
    verifyMask(frame, requireMask);
    return volumeOf<T>(frame, [&](unsigned int z) { return GetImageT<T>(frame, z, requireMask); });
}

template <typename T>
const ImageVolume<T> GetImageVolumeT(const I_FrameImage& frame)
{
    return GetImageVolumeT<T>(const_cast<I_FrameImage&>(frame), false);
}

template <typename T>
ImageVolume<T> GetImageVolumeT(I_FrameImage&& frame, bool requireMask)
{
    verifyMask(frame, requireMask);
    return volumeOf<T>(frame, [&](unsigned int z) { return GetImageT<T>(std::move(frame), z, false); });
}

template <typename T>
ImageVolume<T> GetImageVolumeT(I_Buffer& buffer, unsigned int frame, bool requireMask)
{
    return GetImageVolumeT<T>(frameOf(buffer, frame), requireMask);
}

template <typename T>
const ImageVolume<T> GetImageVolumeT(const I_Buffer& buffer, unsigned int frame)
{
    return GetImageVolumeT<T>(frameOf(buffer, frame), false);
}

template <typename T>
ImageVolume<T> GetImageVolumeT(I_Buffer&& buffer, unsigned int frame, bool requireMask)
{
    return GetImageVolumeT<T>(std::move(frameOf(buffer, frame)), requireMask);
}

std::unique_ptr<ImageVolumeVariant> GetImageVolume(I_FrameImage& frame, bool requireMask)
{
    return getVariant(frame, requireMask);
}

std::unique_ptr<const ImageVolumeVariant> GetImageVolume(const I_FrameImage& frame)
{
    return getVariant(const_cast<I_FrameImage&>(frame), false);
}

std::unique_ptr<ImageVolumeVariant> GetImageVolume(I_FrameImage&& frame, bool requireMask)
{
    return getVariant(std::move(frame), requireMask);
}

std::unique_ptr<ImageVolumeVariant> GetImageVolume(I_Buffer& buffer, unsigned int frame, bool requireMask)
{
    return getVariant(frameOf(buffer, frame), requireMask);
}

std::unique_ptr<const ImageVolumeVariant> GetImageVolume(const I_Buffer& buffer, unsigned int frame)
{
    return getVariant(frameOf(buffer, frame), false);
}

std::unique_ptr<ImageVolumeVariant> GetImageVolume(I_Buffer&& buffer, unsigned int frame, bool requireMask)
{
    return getVariant(std::move(frameOf(buffer, frame)), requireMask);
}

#define DATAOBJECTS_INSTANTIATE(type, number, name)                                                          \
    template ImageVolume<type> GetImageVolumeT(I_FrameImage&, bool);                                         \
    template const ImageVolume<type> GetImageVolumeT(const I_FrameImage&);                                   \
    template ImageVolume<type> GetImageVolumeT(I_FrameImage&&, bool);                                        \
    template ImageVolume<type> GetImageVolumeT(I_Buffer&, unsigned int, bool);                               \
    template const ImageVolume<type> GetImageVolumeT(const I_Buffer&, unsigned int);                         \
    template ImageVolume<type> GetImageVolumeT(I_Buffer&&, unsigned int, bool);
DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_INSTANTIATE)
#undef DATAOBJECTS_INSTANTIATE

} // namespace DataObjects
