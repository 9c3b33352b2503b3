// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/Image.h"

namespace BufferApi
{
class I_Buffer;
class I_Frame;
class I_FrameImage;
} // namespace BufferApi

namespace DataObjects
{

/// \file
/// Images into the frame store by copying: the image stays as it was. ImageMoveToBuffer.h has the forms that
/// take its memory. The templates exist for the six element types; what an object of another type raises is
/// told with the forms for variants.
///
/// \code
/// const auto buffer = CreateBufferFromImage(image, true);
/// BufferApi::ExportBuffer(buffer.get(), path, {});
/// \endcode

/// \name A new frame
/// Of depth 1, owned by the caller, with default scales.
/// \throws RTE::Exception "Unsupported image data type"
/// \throws RTE::VerificationFailed "data-pointer is null" when the data gave its pixels up
/// \{
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT BufferApi::I_FrameImage*
CreateFrameFromImageDataT(const ImageData<T>& data);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT BufferApi::I_FrameImage*
CreateFrameFromImageData(const ImageDataVariant& data);
/// \}

/// \name A new frame with scales, attributes and scalar fields
/// Of depth 1, owned by the caller; the mask only when it is asked for.
/// \throws RTE::Exception "Unsupported image type"
/// \throws RTE::VerificationFailed "data-pointer is null" for an image that was moved from
/// \{
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT BufferApi::I_FrameImage*
CreateFrameFromImageT(const Image<T>& image, bool withMask);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT BufferApi::I_FrameImage*
CreateFrameFromImage(const ImageVariant& image, bool withMask);
/// \}

/// \name A new buffer of one such frame
/// \{
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<BufferApi::I_Buffer>
CreateBufferFromImageDataT(const ImageData<T>& data);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<BufferApi::I_Buffer>
CreateBufferFromImageData(const ImageDataVariant& data);
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<BufferApi::I_Buffer>
CreateBufferFromImageT(const Image<T>& image, bool withMask);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<BufferApi::I_Buffer>
CreateBufferFromImage(const ImageVariant& image, bool withMask);
/// \}

/// Copies pixels into a plane of an existing frame.
/// \throws RTE::VerificationFailed "Invalid destination plane.", "Size of image and image plane must be
/// equal.", "Date type of image and image plane must be equal."
template <typename T>
DATAOBJECTS_DATAOBJECTS_EXPORT void CopyImageDataToFrameT(const ImageData<T>& data,
                                                          BufferApi::I_FrameImage& frame, unsigned int z);

/// \name Into an existing frame
/// Sets the scales of the frame, then copies pixels and, if the frame has a mask, the mask into the plane of
/// z; then replaces the attributes of the frame and the scalar fields of its plane 0, whatever the z. Scales
/// are set already when pixels cannot be copied.
///
/// An image that is a view of this very plane gives its scales only: all else is the frame's.
/// \throws RTE::Exception "Unsupported image type"
/// \throws RTE::VerificationFailed as CopyImageDataToFrameT, and as the assignment to the frame's scalar
/// fields
/// \{
template <typename T>
DATAOBJECTS_DATAOBJECTS_EXPORT void CopyImageToFrameT(const Image<T>& image, BufferApi::I_FrameImage& frame,
                                                      unsigned int z);
DATAOBJECTS_DATAOBJECTS_EXPORT void CopyImageToFrame(const ImageVariant& image,
                                                     BufferApi::I_FrameImage& frame, unsigned int z);
/// \}

/// \name Into a typed scalar of a frame
/// Copies the pixels alone, as ScalarFieldToFrame.h tells of typed scalars; scales stay.
/// \throws RTE::VerificationFailed "Invalid plane index z" with the number, "Size of image and image plane
/// must be equal."
/// \{
template <typename T>
DATAOBJECTS_DATAOBJECTS_EXPORT void CopyImageDataToTypedScalarT(const ImageData<T>& data,
                                                                BufferApi::I_Frame& frame,
                                                                const std::string& name, unsigned int z);
/// \throws RTE::Exception "Unsupported image data type" unless it is one of the six
DATAOBJECTS_DATAOBJECTS_EXPORT void CopyImageDataToTypedScalar(const ImageDataVariant& data,
                                                               BufferApi::I_Frame& frame,
                                                               const std::string& name, unsigned int z);
/// The pixels of the image alone. \throws RTE::Exception "Unsupported image type" unless it is one of the six
DATAOBJECTS_DATAOBJECTS_EXPORT void CopyImageToTypedScalar(const ImageVariant& image,
                                                           BufferApi::I_Frame& frame, const std::string& name,
                                                           unsigned int z);
/// \}

/// The frame store's type of the pixels; `DT_UNKNOWN` for a type that is none of the six.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT BufferApi::E_DataType
GetImageDataType(const ImageDataVariant& data) noexcept;
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT BufferApi::E_DataType
GetImageDataType(const ImageVariant& image) noexcept;

} // namespace DataObjects
