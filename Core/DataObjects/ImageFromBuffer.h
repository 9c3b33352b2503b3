// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/Image.h"

namespace BufferApi
{
class I_Buffer;
class I_FrameImage;
} // namespace BufferApi

namespace DataObjects
{

/// \file
/// Images out of the frame store. The form of the argument says who owns the parts:
/// - from an object that stays, a live view: pixels, mask, scales, attributes and scalar fields are those of
///   the frame, and what is written to the image is written there. The frame must outlive the image. All
///   images of one frame share its attributes and scales through it, for one thread at a time.
/// - from a const object, the same view by a const type.
/// - from an object that is given up (`&&`), an image by itself: it takes the memory of the pixels, of the
///   mask and of the scalar fields of this z, and copies scales and attributes. Of the frame only the other
///   planes and the destruction are defined afterwards; also when something is raised.
///
/// No form copies or allocates pixels. A frame without a mask gives the image one of its own, all valid and
/// made when somebody asks for it, unless `requireMask` asks for that of the frame. The templates exist for
/// the six element types. The planes of an imported buffer are read from the file now, if nobody asked for
/// them before; that raises what the store raises.
///
/// \code
/// Image<unsigned short> live = GetImageT<unsigned short>(frame, 0, false);
/// live.SetScaleX(Zt::LinearScale(0.02, 0.0, "mm", "Position x")); // the frame's scale
/// auto own = GetImage(std::move(*buffer), 5, 0, false);
/// buffer.reset();
/// \endcode

/// \name From an image frame
/// \throws RTE::VerificationFailed "Frame is NULL." for a null pointer; "Frame requires a mask, but has no
/// mask.", "Z is out of range", "Mask has invalid size."; of a view "Z-Plane for given frame not valid",
/// "Pixel-plane of given frame has not the required type", "Size of image and image plane must be equal."; of
/// a frame that is given up, before all others, "Invalid plane-index z" with the number, "Pixel-plane of
/// given frame has not the required type"
/// \{
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT Image<T> GetImageT(BufferApi::I_FrameImage& frame,
                                                                unsigned int z, bool requireMask);
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT Image<T> GetImageT(BufferApi::I_FrameImage* frame,
                                                                unsigned int z, bool requireMask);
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT const Image<T> GetImageT(const BufferApi::I_FrameImage& frame,
                                                                      unsigned int z);
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT Image<T> GetImageT(BufferApi::I_FrameImage&& frame,
                                                                unsigned int z, bool requireMask);
/// \}

/// \name From a frame of a buffer
/// \throws RTE::VerificationFailed "Buffer is NULL" for a null pointer, "Frame type is not image.", also
/// beyond the last frame, and as from a frame
/// \{
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT Image<T>
GetImageT(BufferApi::I_Buffer& buffer, unsigned int frame, unsigned int z, bool requireMask);
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT Image<T>
GetImageT(BufferApi::I_Buffer* buffer, unsigned int frame, unsigned int z, bool requireMask);
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT const Image<T> GetImageT(const BufferApi::I_Buffer& buffer,
                                                                      unsigned int frame, unsigned int z);
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT const Image<T> GetImageT(const BufferApi::I_Buffer* buffer,
                                                                      unsigned int frame, unsigned int z);
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT Image<T>
GetImageT(BufferApi::I_Buffer&& buffer, unsigned int frame, unsigned int z, bool requireMask);
/// \}

/// \name In the type of the frame
/// \throws RTE::Exception "RGB image is not supported." for a colour frame, "Image has unsupported data type"
/// \throws RTE::VerificationFailed "Frame type is not an image.", also beyond the last frame, and as the
/// templates
/// \{
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ImageVariant>
GetImage(BufferApi::I_FrameImage& frame, unsigned int z, bool requireMask);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ImageVariant>
GetImage(BufferApi::I_FrameImage* frame, unsigned int z, bool requireMask);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<const ImageVariant>
GetImage(const BufferApi::I_FrameImage& frame, unsigned int z);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ImageVariant>
GetImage(BufferApi::I_FrameImage&& frame, unsigned int z, bool requireMask);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ImageVariant>
GetImage(BufferApi::I_Buffer& buffer, unsigned int frame, unsigned int z, bool requireMask);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ImageVariant>
GetImage(BufferApi::I_Buffer* buffer, unsigned int frame, unsigned int z, bool requireMask);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<const ImageVariant>
GetImage(const BufferApi::I_Buffer& buffer, unsigned int frame, unsigned int z);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<const ImageVariant>
GetImage(const BufferApi::I_Buffer* buffer, unsigned int frame, unsigned int z);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ImageVariant>
GetImage(BufferApi::I_Buffer&& buffer, unsigned int frame, unsigned int z, bool requireMask);
/// \}

/// A live view with a mask that is the frame's, which gets one, all valid, when it has none.
/// \throws RTE::VerificationFailed "ImageFrame is NULL", and as GetImage
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ImageVariant>
AttachMaskAndGetImage(BufferApi::I_FrameImage* frame, unsigned int z);

} // namespace DataObjects
