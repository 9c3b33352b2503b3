// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/ImageBuffer.h"

#include <QString>

#include <memory>
#include <vector>

namespace DataObjects
{

/// \file
/// Data objects out of files, each in one call. What the file holds decides the format, not its name. The
/// objects own all they need and are independent of the file.
///
/// Of the file only the planes that the object needs are read, whatever its length; so one image of a long
/// recording takes the memory and the time of one image. A frame without a mask gives one that is all valid.
///
/// What cannot be opened or read raises what the frame store raises, RTE::FileOpenError, RTE::FileReadError
/// or RTE::ParseError with file and reason; a frame, plane or type that does not fit what the conversion
/// raises.
///
/// \code
/// const std::unique_ptr<ImageVariant> image = ImportImage(path, 500, 0);
/// const Image<float> converted = ImportImageT<float>(path, 500, 0);
/// \endcode

/// \name In the type of the file
/// \throws RTE::Exception of the frame store, as above
/// \{

/// One plane with mask, scales, attributes and scalar fields; as GetImage from a buffer that is given up:
/// RTE::VerificationFailed "Frame type is not an image.", also beyond the last frame, "Invalid plane-index "
/// with the number, RTE::Exception "RGB image is not supported."
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ImageVariant>
ImportImage(const QString& path, unsigned int frame, unsigned int z);
/// The whole file; as GetImageBuffer: RTE::VerificationFailed "Frame of buffer is not from type image!",
/// RTE::Exception "Given buffer has no frames", "RGB ImageBuffer is not supported."
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ImageBufferVariant>
ImportImageBuffer(const QString& path);
/// The pixels of one plane; as GetImageData: RTE::VerificationFailed "Frame type is not an image.", also
/// beyond the last frame, "Invalid plane-index " with the number, RTE::Exception "BufferApi::DT_RGB not
/// supported yet."
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ImageDataVariant>
ImportImageData(const QString& path, unsigned int frame, unsigned int z);
/// All planes of one frame; as GetImageVolume: RTE::VerificationFailed "Frame index out of bounds", "Frame
/// type of buffer is not image", RTE::Exception "RGB image is not supported."
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ImageVolumeVariant>
ImportImageVolume(const QString& path, unsigned int frame);
/// Plane 0 of every frame; raises as ImportImage does.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::vector<std::unique_ptr<ImageVariant>>
ImportImages(const QString& path);
/// \}

/// \name In a given type
/// Pixels of another type are converted as ImageData::Assign does, with both in memory for that time; mask,
/// scales, attributes and scalar fields stay as they are. Pixels of this type are moved. Each raises as its
/// counterpart above. For the six element types.
/// \{
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT Image<T> ImportImageT(const QString& path, unsigned int frame,
                                                                   unsigned int z);
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT ImageBuffer<T> ImportImageBufferT(const QString& path);
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT ImageData<T>
ImportImageDataT(const QString& path, unsigned int frame, unsigned int z);
template <typename T>
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT ImageVolume<T> ImportImageVolumeT(const QString& path,
                                                                               unsigned int frame);
/// \}

} // namespace DataObjects
