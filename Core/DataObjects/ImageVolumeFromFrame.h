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
/// Volumes out of the frame store: a frame with one plane per z is a volume, whose plane z is what
/// ImageFromBuffer.h gives for it. The form of the argument says who owns the parts as it does there: a live
/// view of the whole frame, the same by a const type, or a volume by itself that takes the memory of all
/// planes, masks and scalar fields. All planes have the scales and attributes of plane 0, which in a view are
/// those of the frame. The templates exist for the six element types.
///
/// \code
/// ImageVolume<float> live = GetImageVolumeT<float>(frame, false);
/// live.SetVoxel(3, 4, 7, 1.5F); // the frame's voxel
/// \endcode

/// \name From an image frame
/// \throws RTE::VerificationFailed "Frame requires a mask, but has no mask.", then as GetImageT, and
/// "ImageVolume must have at least one z-plane" for a frame of depth 0
/// \{
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT ImageVolume<T> GetImageVolumeT(BufferApi::I_FrameImage& frame,
                                                                            bool requireMask);
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT const ImageVolume<T>
GetImageVolumeT(const BufferApi::I_FrameImage& frame);
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT ImageVolume<T> GetImageVolumeT(BufferApi::I_FrameImage&& frame,
                                                                            bool requireMask);
/// \}

/// \name From a frame of a buffer
/// \throws RTE::VerificationFailed "Frame index out of bounds", "Frame type of buffer is not image", and as
/// from a frame
/// \{
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT ImageVolume<T>
GetImageVolumeT(BufferApi::I_Buffer& buffer, unsigned int frame, bool requireMask);
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT const ImageVolume<T>
GetImageVolumeT(const BufferApi::I_Buffer& buffer, unsigned int frame);
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT ImageVolume<T>
GetImageVolumeT(BufferApi::I_Buffer&& buffer, unsigned int frame, bool requireMask);
/// \}

/// \name In the type of the frame
/// \throws RTE::Exception "RGB image is not supported." for a colour frame, "Image has unsupported data type"
/// \throws RTE::VerificationFailed as the templates
/// \{
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ImageVolumeVariant>
GetImageVolume(BufferApi::I_FrameImage& frame, bool requireMask);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<const ImageVolumeVariant>
GetImageVolume(const BufferApi::I_FrameImage& frame);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ImageVolumeVariant>
GetImageVolume(BufferApi::I_FrameImage&& frame, bool requireMask);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ImageVolumeVariant>
GetImageVolume(BufferApi::I_Buffer& buffer, unsigned int frame, bool requireMask);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<const ImageVolumeVariant>
GetImageVolume(const BufferApi::I_Buffer& buffer, unsigned int frame);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ImageVolumeVariant>
GetImageVolume(BufferApi::I_Buffer&& buffer, unsigned int frame, bool requireMask);
/// \}

} // namespace DataObjects
