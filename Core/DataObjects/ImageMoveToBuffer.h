// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/ImageToBuffer.h"

namespace DataObjects
{

/// \file
/// Images into the frame store by moving: the frame takes the arrays of pixels, mask and scalar fields that
/// the image owns. What it does not own, being a view or in a memory block, is copied. The moved-from object
/// may only be destroyed or assigned to; that is so, too, when something is raised, and nothing leaks then.
/// The templates exist for the six element types.
///
/// \code
/// buffer->AddFrame(CreateFrameFromImage(std::move(image), true));
/// \endcode

/// \name A new frame
/// Of depth 1, owned by the caller, with default scales.
/// \throws RTE::Exception "Unsupported image data type"
/// \throws RTE::VerificationFailed "data-pointer is null" when the data gave its pixels up
/// \{
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT BufferApi::I_FrameImage*
CreateFrameFromImageDataT(ImageData<T>&& data);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT BufferApi::I_FrameImage*
CreateFrameFromImageData(ImageDataVariant&& data);
/// \}

/// \name A new frame with scales, attributes and scalar fields
/// Of depth 1, owned by the caller; the mask only when it is asked for.
/// \throws RTE::Exception "Unsupported image type"
/// \throws RTE::VerificationFailed "data-pointer is null" for an image that was moved from
/// \{
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT BufferApi::I_FrameImage* CreateFrameFromImageT(Image<T>&& image,
                                                                                            bool withMask);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT BufferApi::I_FrameImage*
CreateFrameFromImage(ImageVariant&& image, bool withMask);
/// \}

/// \name A new buffer of one such frame
/// \{
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<BufferApi::I_Buffer>
CreateBufferFromImageData(ImageDataVariant&& data);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<BufferApi::I_Buffer>
CreateBufferFromImage(ImageVariant&& image, bool withMask);
/// \}

} // namespace DataObjects
