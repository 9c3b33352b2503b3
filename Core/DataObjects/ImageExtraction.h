// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/ImageVolumeVariant.h"

#include <memory>
#include <vector>

namespace DataObjects
{

/// \name Cuts through a volume
/// Each gives a new image of the volume's pixel type that owns its pixels. Its Z scale has the unit,
/// description and factor of the axis that is cut, and as offset the physical position of the cut.
///
/// The cuts across the planes carry pixels, validity, the I scale and the attributes, but no scalar fields; a
/// mask of the volume that nobody asked for counts as valid and is not made.
/// \throws RTE::OutOfRangeError with the name of the index, such as "y plane index", beyond its axis
/// \throws RTE::Exception "Unsupported image type" unless the volume has one of the six types
/// \{

/// The plane at this z, width × height, with its scalar fields.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ImageVariant>
ExtractXYImage(const ImageVolumeVariant& volume, unsigned int z);
/// The cut at row y, width × depth: pixel (x, z) is voxel (x, y, z).
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ImageVariant>
ExtractXZImage(const ImageVolumeVariant& volume, unsigned int y);
/// The cut at column x, height × depth: pixel (y, z) is voxel (x, y, z).
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ImageVariant>
ExtractYZImage(const ImageVolumeVariant& volume, unsigned int x);
/// The cut at column x, depth × height: pixel (z, y) is voxel (x, y, z).
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ImageVariant>
ExtractZYImage(const ImageVolumeVariant& volume, unsigned int x);
/// \}

/// The pixels of row y as numbers; empty when there is no such row.
/// \throws RTE::VerificationFailed "data-pointer is null" when the pixels were released
/// \throws RTE::Exception "Unsupported image data type" unless the pixels have one of the six types
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::vector<double>
getImageDataLine(const ImageDataVariant& data, unsigned int y);

} // namespace DataObjects
