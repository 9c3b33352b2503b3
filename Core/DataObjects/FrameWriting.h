// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/BufferApi.h"
#include "Core/DataObjects/BufferAttributes.h"
#include "Core/DataObjects/ImageData.h"
#include "Core/DataObjects/ImageParts.h"

#include <algorithm>

/// \file
/// Steps of making frames of images and volumes.
namespace DataObjects::Private
{

using FramePointer = std::unique_ptr<BufferApi::I_FrameImage>;

/// Arrays on their way into a frame; those that do not arrive are freed.
template <typename T>
using MovingArrays = std::vector<std::unique_ptr<T[]>>;

/// The arrays of data or masks, one per plane; none, and nothing changes, when one of them is not owned, was
/// given up, has another size, or serves two planes.
template <typename T, typename Owner>
[[nodiscard]] MovingArrays<T> releaseArrays(const std::vector<Owner*>& owners,
                                            const Math::Size2T<unsigned int>& size)
{
    std::vector<const T*> arrays;
    for (const Owner* owner : owners) {
        const bool isWhole = owner->HasOwnerShip() && owner->GetSize() == size;
        arrays.push_back(isWhole ? std::as_const(*owner).GetRawPointer() : nullptr);
    }
    std::sort(arrays.begin(), arrays.end());
    const bool isShared = std::adjacent_find(arrays.begin(), arrays.end()) != arrays.end();
    if (isShared || arrays.empty() || arrays.front() == nullptr) {
        return {};
    }
    MovingArrays<T> released(owners.size());
    std::transform(owners.begin(), owners.end(), released.begin(),
                   [](Owner* owner) { return std::unique_ptr<T[]>(owner->ReleaseRawPointer()); });
    return released;
}

/// Hands the arrays to `take`, as a vector of pointers; they stay here if that raises.
template <typename T, typename Take>
void handOver(MovingArrays<T>& arrays, Take take)
{
    std::vector<void*> pointers;
    for (const auto& array : arrays) {
        pointers.push_back(array.get());
    }
    take(pointers);
    for (auto& array : arrays) {
        static_cast<void>(array.release());
    }
}

/// \throws RTE::VerificationFailed "Invalid data type for image frame." for null
[[nodiscard]] FramePointer verifiedFrame(BufferApi::I_FrameImage* frame, RTE::SourceLocation location);

/// \throws RTE::VerificationFailed "data-pointer is null" for an image that was moved from
inline void verifyNotMovedFrom(const ImageVariant& image,
                               RTE::SourceLocation location = RTE::SourceLocation::current())
{
    RTE::verify(image.GetImageDataSPtr() != nullptr, "data-pointer is null", location);
}

/// A frame with pixels of its own, uninitialised.
template <typename T>
[[nodiscard]] FramePointer newFrame(const Math::Size2T<unsigned int>& size, unsigned int depth,
                                    RTE::SourceLocation location = RTE::SourceLocation::current())
{
    return verifiedFrame(
        BufferApi::CreateImageFrame(BufferApi::GetDataType<T>(), size.width, size.height, depth), location);
}

/// A frame that takes over one array per z.
template <typename T>
[[nodiscard]] FramePointer newFrame(const Math::Size2T<unsigned int>& size, MovingArrays<T> planes,
                                    RTE::SourceLocation location = RTE::SourceLocation::current())
{
    FramePointer frame;
    handOver(planes, [&](const std::vector<void*>& arrays) {
        frame = verifiedFrame(BufferApi::CreateImageFrameWithPlaneMemory(BufferApi::GetDataType<T>(),
                                                                         size.width, size.height, arrays),
                              location);
    });
    return frame;
}

/// Copies the pixels of a plane of this type; nothing when both are the same memory.
/// \throws RTE::VerificationFailed "data-pointer is null" when one side gave its memory up, "Source and
/// destination have different sizes."
template <typename T>
void copyPixels(const ImageData<T>& source, const BufferApi::I_PlaneBase& plane)
{
    RTE::verify(source.GetRawPointer() != nullptr || source.empty(), "data-pointer is null");
    ImageData<T>(static_cast<T*>(plane.GetData()), plane.GetWidth(), plane.GetHeight(), false) = source;
}

/// \name Masks of a frame
/// One that was not made yet is all valid, and is not made by copying.
/// \{

/// Copies the mask of the image into that of the frame.
void copyMask(const ImageVariant& image, const BufferApi::I_Frame& frame, unsigned int z);

/// Gives a frame without masks copies of those of the images, one per z.
void addMasks(const std::vector<const ImageVariant*>& images, BufferApi::I_Frame& frame);

/// The same, with their arrays when each of them can be moved.
void moveMasks(const std::vector<ImageVariant*>& images, BufferApi::I_Frame& frame);
/// \}

/// Sets the scales of an image or a volume on the frame, and merges its attributes in.
template <typename Source>
void setScalesAndAttributes(const Source& source, BufferApi::I_Frame& frame)
{
    assignScales(source, frame);
    BufferAttributes(frame).merge(source.GetAttributes());
}

/// Appends the frame, which is destroyed when that raises.
void addFrame(BufferApi::I_Buffer& buffer, FramePointer frame);

/// A buffer with this frame.
[[nodiscard]] std::unique_ptr<BufferApi::I_Buffer> bufferOf(FramePointer frame);

} // namespace DataObjects::Private
