// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/ImageBuffer.h"

namespace BufferApi
{
class I_Buffer;
} // namespace BufferApi

namespace DataObjects
{

/// \file
/// Whole recordings out of the frame store and into it. Each frame is what ImageVolumeFromFrame.h gives for
/// it, each written one what ImageVolumeToFrame.h makes; the name goes along. From a buffer that stays, a
/// live view, whose global attributes are those of the buffer; from a const one the same by a const type;
/// from one that is given up (`&&`), a recording by itself, with copies of the attributes, whose source may
/// only be destroyed. The templates exist for the six element types.
///
/// \code
/// std::unique_ptr<BufferApi::I_Buffer> file(BufferApi::ImportBuffer(path, {}));
/// const std::unique_ptr<ImageBufferVariant> recording = GetImageBuffer(std::move(*file), false);
/// file.reset();
/// \endcode

/// \name A recording
/// All frames have to be images of type T.
/// \throws RTE::VerificationFailed "Frame of buffer is not from type image!", as GetImageVolumeT, and "Image
/// volume list is empty" without frames
/// \{
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT ImageBuffer<T> GetImageBufferT(BufferApi::I_Buffer& buffer,
                                                                            bool requireMask);
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT ImageBuffer<T> GetImageBufferT(BufferApi::I_Buffer&& buffer,
                                                                            bool requireMask);
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT const ImageBuffer<T>
GetImageBufferT(const BufferApi::I_Buffer& buffer);
/// \}

/// \name A recording in the type of the first frame
/// \throws RTE::Exception "Given buffer has no frames", "RGB ImageBuffer is not supported.", "Image volume
/// list has unsupported data type" \throws RTE::VerificationFailed as the templates
/// \{
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ImageBufferVariant>
GetImageBuffer(BufferApi::I_Buffer& buffer, bool requireMask);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ImageBufferVariant>
GetImageBuffer(BufferApi::I_Buffer&& buffer, bool requireMask);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<const ImageBufferVariant>
GetImageBuffer(const BufferApi::I_Buffer& buffer);
/// \}

/// \name A buffer of a recording
/// Copies all, or moves what each frame owns, the last one where frames share planes; masks only when they
/// are asked for. A recording without frames gives a buffer without. \throws RTE::Exception "Unsupported
/// image type"
/// \{
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<BufferApi::I_Buffer>
CreateBufferFromImageBuffer(const ImageBufferVariant& recording, bool withMask);
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<BufferApi::I_Buffer>
CreateBufferFromImageBuffer(ImageBufferVariant&& recording, bool withMask);
/// \}

} // namespace DataObjects
