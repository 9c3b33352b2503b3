// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/ImageVolume.h"

namespace BufferApi
{
class I_Buffer;
class I_FrameImage;
} // namespace BufferApi

namespace DataObjects
{

/// \file
/// Volumes into the frame store: plane z of the volume becomes plane z of a frame. From a volume that stays
/// all is copied. From one that is given up (`&&`) the frame takes the arrays of pixels, if every plane owns
/// its own, and likewise those of the masks and of the scalar fields; else they are copied, those of planes
/// that own them too, and stay. A moved-from volume may only be destroyed or assigned to; that is so, too,
/// when something is raised, and nothing leaks then. The templates exist for the six element types; a volume
/// of another type raises RTE::Exception "Unsupported image type", one that was moved from
/// RTE::VerificationFailed "ImageVolume must have at least one z-plane".

/// \name A new frame
/// Owned by the caller, with scales, attributes and scalar fields; the mask only when it is asked for.
/// \{
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT BufferApi::I_FrameImage*
CreateFrameFromImageVolumeT(const ImageVolume<T>& volume, bool withMask);
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT BufferApi::I_FrameImage*
CreateFrameFromImageVolumeT(ImageVolume<T>&& volume, bool withMask);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT BufferApi::I_FrameImage*
CreateFrameFromImageVolume(const ImageVolumeVariant& volume, bool withMask);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT BufferApi::I_FrameImage*
CreateFrameFromImageVolume(ImageVolumeVariant&& volume, bool withMask);
/// \}

/// \name A new buffer of one such frame
/// \{
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<BufferApi::I_Buffer>
CreateBufferFromImageVolume(const ImageVolumeVariant& volume, bool withMask);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<BufferApi::I_Buffer>
CreateBufferFromImageVolume(ImageVolumeVariant&& volume, bool withMask);
/// \}

/// \name Into an existing frame
/// Copies pixels, masks if the frame has any, and scalar fields plane by plane; then sets the scales of the
/// frame and merges the attributes in: those of other names stay.
/// \throws RTE::VerificationFailed "Z-Plane for given frame not valid!", "Pixel-plane of given frame has not
/// the required type!", "Image volume field and image frame have different width", the same of the height and
/// of the depth, in this order and before anything changes; and as the assignment to the frame's scalar
/// fields
/// \{
template <typename T>
DATAOBJECTS_DATAOBJECTS_EXPORT void CopyImageVolumeToFrameT(const ImageVolume<T>& volume,
                                                            BufferApi::I_FrameImage& frame);
DATAOBJECTS_DATAOBJECTS_EXPORT void CopyImageVolumeToFrame(const ImageVolumeVariant& volume,
                                                           BufferApi::I_FrameImage& frame);
/// \}

} // namespace DataObjects
