// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/ImageBufferVariant.h"
#include "Core/DataObjects/ScalarField.h"

namespace DataObjects
{

/// \file
/// Data objects into files, each in one call; the counterpart of FilesystemImport.h.
///
/// A path without a suffix gets ".qfi", the native file; any other stays as it is, also "run.1", and its last
/// suffix decides the format: those that no other format owns mean the native one. Folders that are missing
/// are made, and stay when the export fails. The old file or the whole new one stands there afterwards;
/// exports to one path at the same time are not guarded against each other.
///
/// Files have everything: pixels, masks, scales, attributes and scalar fields. Pixels and masks of images,
/// volumes and recordings are written from where they are, without a copy. A native file always has the
/// masks; one of another format has those that tell something, for a missing mask reads as all valid.
/// \throws RTE::VerificationFailed "Failed to create directory for export!", with nothing written
/// \throws RTE::Exception with file and reason when the file cannot be written or its format cannot hold the
///         object without loss
///
/// \code
/// ExportImage(image, "results/run 1/mean");                  // results/run 1/mean.qfi
/// ExportScalarField(*fields.Get("Peak ratio"), "ratio.tif"); // a TIFF file
/// \endcode

/// One frame of depth 1.
DATAOBJECTS_DATAOBJECTS_EXPORT void ExportImage(const ImageVariant& image, const QString& path);
/// A frame for each, with name and global attributes.
DATAOBJECTS_DATAOBJECTS_EXPORT void ExportImageBuffer(const ImageBufferVariant& recording,
                                                      const QString& path);
/// Pixels alone, with default scales.
DATAOBJECTS_DATAOBJECTS_EXPORT void ExportImageData(const ImageDataVariant& data, const QString& path);
/// One frame with a plane for each z.
DATAOBJECTS_DATAOBJECTS_EXPORT void ExportImageVolume(const ImageVolumeVariant& volume, const QString& path);
/// A picture of bytes: 255 where the mask is valid, 0 where it is not.
/// \throws RTE::VerificationFailed "data-pointer is null" when the mask gave its pixels up
DATAOBJECTS_DATAOBJECTS_EXPORT void ExportMask(const Mask& mask, const QString& path);
/// An image, all valid, of the field's pixels and I scale.
/// \throws RTE::Exception "Unsupported scalar field type"
DATAOBJECTS_DATAOBJECTS_EXPORT void ExportScalarField(const ScalarFieldVariant& field, const QString& path);
/// The same of a field of one of the six element types.
template <typename T>
DATAOBJECTS_DATAOBJECTS_EXPORT void ExportScalarFieldT(const ScalarField<T>& field, const QString& path);

} // namespace DataObjects
