// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageVolumeToFrame.h"

#include "Core/DataObjects/BufferLibDataAccess.h"
#include "Core/DataObjects/FrameWriting.h"
#include "Core/DataObjects/ScalarFieldFromFrame.h"
#include "Core/DataObjects/ScalarFieldToFrame.h"
#include "Core/DataObjects/VisitImageType.h"

namespace DataObjects
{

namespace
{

using BufferApi::I_Buffer;
using BufferApi::I_FrameImage;
using Private::FramePointer;

template <typename T>
void verifyHasPlanes(const ImageVolume<T>& volume)
{
    RTE::verify(volume.GetDepth() > 0, "ImageVolume must have at least one z-plane");
}

template <typename T>
void verifyFits(const ImageVolume<T>& volume, const I_FrameImage& frame)
{
    verifyHasPlanes(volume);
    const BufferApi::I_PlaneBase* const plane = Private::findPixelPlane(frame, 0);
    RTE::verify(plane != nullptr, "Z-Plane for given frame not valid!");
    RTE::verify(BufferApi::IsOfType<T>(*plane), "Pixel-plane of given frame has not the required type!");
    RTE::verify(volume.GetWidth() == plane->GetWidth(),
                "Image volume field and image frame have different width");
    RTE::verify(volume.GetHeight() == plane->GetHeight(),
                "Image volume field and image frame have different height");
    RTE::verify(volume.GetDepth() == frame.GetDepth(),
                "Image volume field and image frame have different depth");
}

template <typename T>
Math::Size2T<unsigned int> planeSize(const ImageVolume<T>& volume)
{
    return {volume.GetWidth(), volume.GetHeight()};
}

template <typename T>
FramePointer newFrameFor(const ImageVolume<T>& volume)
{
    return Private::newFrame<T>(planeSize(volume), volume.GetDepth());
}

/// The planes by the pointers that the steps for masks take.
template <typename Plane, typename T>
std::vector<Plane*> planesOf(const ImageVolume<T>& volume)
{
    std::vector<Plane*> planes;
    for (const auto& plane : volume) {
        planes.push_back(plane.get());
    }
    return planes;
}

template <typename T>
void copyPlane(const Image<T>& plane, bool withMask, I_FrameImage& frame, unsigned int z)
{
    Private::copyPixels(plane.GetImageData(), *Private::findPixelPlane(frame, z));
    if (withMask) {
        Private::copyMask(plane, frame, z);
    }
    GetScalarFields(frame, z)->DeepCopyFrom(plane.GetScalarFields());
}

template <typename T>
void copyVolume(const ImageVolume<T>& volume, bool withMasks, I_FrameImage& frame)
{
    for (unsigned int z = 0; z < volume.GetDepth(); ++z) {
        copyPlane(*volume[z], withMasks, frame, z);
    }
    Private::setScalesAndAttributes(volume, frame);
}

template <typename T>
FramePointer frameOf(const ImageVolume<T>& volume, bool withMask)
{
    verifyHasPlanes(volume);
    FramePointer frame = newFrameFor(volume);
    if (withMask) {
        Private::addMasks(planesOf<const ImageVariant>(volume), *frame);
    }
    copyVolume(volume, false, *frame);
    return frame;
}

template <typename T>
FramePointer pixelsMoved(ImageVolume<T>& volume)
{
    std::vector<ImageData<T>*> planes;
    for (const auto& plane : volume) {
        planes.push_back(&plane->GetImageData());
    }
    auto arrays = Private::releaseArrays<T>(planes, planeSize(volume));
    if (!arrays.empty()) {
        return Private::newFrame<T>(planeSize(volume), std::move(arrays));
    }
    FramePointer frame = newFrameFor(volume);
    for (unsigned int z = 0; z < volume.GetDepth(); ++z) {
        Private::copyPixels(*planes[z], *Private::findPixelPlane(*frame, z));
    }
    return frame;
}

template <typename T>
FramePointer frameOf(ImageVolume<T>& volume, bool withMask)
{
    verifyHasPlanes(volume);
    FramePointer frame = pixelsMoved(volume);
    if (withMask) {
        Private::moveMasks(planesOf<ImageVariant>(volume), *frame);
    }
    Private::setScalesAndAttributes(volume, *frame);
    MoveScalarFieldsFromVolumeToFrame(volume, *frame);
    return frame;
}

/// Of a volume that stays or, when it is not const, is given up.
template <typename Variant>
FramePointer frameOfVariant(Variant& volume, bool withMask)
{
    return Private::visitImageType(volume.GetDataType(), [&](auto tag) {
        using Volume = ImageVolume<typename decltype(tag)::type>;
        using Typed = std::conditional_t<std::is_const_v<Variant>, const Volume, Volume>;
        return frameOf(static_cast<Typed&>(volume), withMask);
    });
}

} // namespace

template <typename T>
I_FrameImage* CreateFrameFromImageVolumeT(const ImageVolume<T>& volume, bool withMask)
{
    return frameOf(volume, withMask).release();
}

template <typename T>
I_FrameImage* CreateFrameFromImageVolumeT(ImageVolume<T>&& volume, bool withMask)
{
    return frameOf(volume, withMask).release();
}

I_FrameImage* CreateFrameFromImageVolume(const ImageVolumeVariant& volume, bool withMask)
{
    return frameOfVariant(volume, withMask).release();
}

I_FrameImage* CreateFrameFromImageVolume(ImageVolumeVariant&& volume, bool withMask)
{
    return frameOfVariant(volume, withMask).release();
}

std::unique_ptr<I_Buffer> CreateBufferFromImageVolume(const ImageVolumeVariant& volume, bool withMask)
{
    return Private::bufferOf(frameOfVariant(volume, withMask));
}

std::unique_ptr<I_Buffer> CreateBufferFromImageVolume(ImageVolumeVariant&& volume, bool withMask)
{
    return Private::bufferOf(frameOfVariant(volume, withMask));
}

template <typename T>
void CopyImageVolumeToFrameT(const ImageVolume<T>& volume, I_FrameImage& frame)
{
    verifyFits(volume, frame);
    copyVolume(volume, frame.HasMask(), frame);
}

void CopyImageVolumeToFrame(const ImageVolumeVariant& volume, I_FrameImage& frame)
{
    Private::visitImageType(volume.GetDataType(), [&](auto tag) {
        CopyImageVolumeToFrameT(static_cast<const ImageVolume<typename decltype(tag)::type>&>(volume), frame);
    });
}

#define DATAOBJECTS_INSTANTIATE(type, number, name)                                                          \
    template I_FrameImage* CreateFrameFromImageVolumeT(const ImageVolume<type>&, bool);                      \
    template I_FrameImage* CreateFrameFromImageVolumeT(ImageVolume<type>&&, bool);                           \
    template void CopyImageVolumeToFrameT(const ImageVolume<type>&, I_FrameImage&);
DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_INSTANTIATE)
#undef DATAOBJECTS_INSTANTIATE

} // namespace DataObjects
