// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/ImageData.h"

#include <string>

namespace BufferApi
{
class I_Buffer;
class I_Frame;
class I_FrameImage;
class I_PlaneBase;
} // namespace BufferApi

namespace DataObjects
{

/// \file
/// Pixels out of the frame store. No form touches a pixel; that of the argument says who owns them:
/// - from an object that stays, a view: what is written to it is written to the plane, which must outlive it;
/// - from a const object, the same view by a const type;
/// - from an object that is given up (`&&`), the memory of the plane, which is left without: of it and of its
///   frame only the other planes and the destruction are defined.
///
/// The templates exist for the six element types. The planes of an imported buffer are read from the file
/// now, if nobody asked for them before; that raises what the store raises.
///
/// \code
/// ImageData<float> live = GetImageDataT<float>(*buffer, 0, 0);
/// live *= 2.0; // the frame's pixels
/// const ImageData<float> own = GetImageDataT<float>(std::move(*buffer), 0, 0);
/// buffer.reset();
/// \endcode

/// \name From a plane
/// \throws RTE::VerificationFailed "Pixel-plane of given frame has not the required type", "data-pointer is
/// null" when the plane's memory was given up
/// \{
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT ImageData<T> GetImageDataT(BufferApi::I_PlaneBase& plane);
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT ImageData<T> GetImageDataT(BufferApi::I_PlaneBase&& plane);
/// \}

/// \name From a plane of an image frame
/// \throws RTE::VerificationFailed "Invalid plane-index z" with the number when the frame has no pixels
/// there, and as from a plane
/// \{
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT ImageData<T> GetImageDataT(BufferApi::I_FrameImage& frame,
                                                                        unsigned int z);
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT ImageData<T> GetImageDataT(BufferApi::I_FrameImage&& frame,
                                                                        unsigned int z);
/// \}

/// \name From a frame of a buffer
/// \throws RTE::VerificationFailed "Frame type is not image.", also beyond the last frame, and as from a
/// frame
/// \{
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT ImageData<T> GetImageDataT(BufferApi::I_Buffer& buffer,
                                                                        unsigned int frame, unsigned int z);
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT ImageData<T> GetImageDataT(BufferApi::I_Buffer&& buffer,
                                                                        unsigned int frame, unsigned int z);
/// \}

/// \name From a typed scalar of a frame
/// \throws RTE::VerificationFailed "No typed scalar of name 'name' found.", "Invalid plane index z" with the
/// number, and as from a plane
/// \{
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT ImageData<T>
GetImageDataFromTypedScalarT(BufferApi::I_Frame& frame, const std::string& name, unsigned int z);
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT ImageData<T>
GetImageDataFromTypedScalarT(BufferApi::I_Frame&& frame, const std::string& name, unsigned int z);
/// \}

/// \name In the type of the frame
/// \throws RTE::Exception "BufferApi::DT_RGB not supported yet." for a colour frame, "Input frame has
/// unsupported data type"
/// \throws RTE::VerificationFailed "Frame type is not an image.", also beyond the last frame, and as the
/// templates
/// \{
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ImageDataVariant>
GetImageData(BufferApi::I_FrameImage& frame, unsigned int z);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ImageDataVariant>
GetImageData(BufferApi::I_FrameImage&& frame, unsigned int z);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<const ImageDataVariant>
GetImageData(const BufferApi::I_FrameImage& frame, unsigned int z);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ImageDataVariant>
GetImageData(BufferApi::I_Buffer& buffer, unsigned int frame, unsigned int z);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ImageDataVariant>
GetImageData(BufferApi::I_Buffer&& buffer, unsigned int frame, unsigned int z);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<const ImageDataVariant>
GetImageData(const BufferApi::I_Buffer& buffer, unsigned int frame, unsigned int z);
/// \}

} // namespace DataObjects
