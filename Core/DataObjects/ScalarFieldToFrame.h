// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/ImageVolumeVariant.h"
#include "Core/DataObjects/ScalarField.h"

#include <string>

namespace BufferApi
{
class I_Frame;
class I_FrameImage;
} // namespace BufferApi

namespace DataObjects
{

/// \file
/// Pixels into the typed scalars of a frame. What ScalarFieldFromFrame.h tells of names holds here.
///
/// A typed scalar that the frame lacks is added with a plane for each z, zeroed. One of the pixels' type is
/// overwritten where it is, so that views of it stay; one of another type is replaced with all its planes.
/// All checks of a field come first: when they raise, the field and its typed scalar are as they were. The
/// templates exist for the six element types.
///
/// All functions throw RTE::VerificationFailed "Empty scalar field names are not allowed.", and "data-pointer
/// is null" for pixels or a plane whose memory was given up.

/// \name Copying a scalar field
/// Pixels into one plane, and the scale, which is that of all planes.
/// \throws RTE::VerificationFailed "Invalid plane index z" with the number, "Size of TS and plane must be
/// equal."
/// \{
template <typename T>
DATAOBJECTS_DATAOBJECTS_EXPORT void
CopyScalarFieldToFrameTypedScalarT(const ScalarField<T>& field, BufferApi::I_Frame& frame,
                                   const std::string& name, unsigned int plane);
/// \throws RTE::Exception "Unsupported scalar field type" unless it has one of the six types
DATAOBJECTS_DATAOBJECTS_EXPORT void CopyScalarFieldToFrameTypedScalar(const ScalarFieldVariant& field,
                                                                      BufferApi::I_Frame& frame,
                                                                      const std::string& name,
                                                                      unsigned int plane);
/// \}

/// \name Moving pixels
/// The frame takes over the array when the pixels own it and the frame has one plane and no typed scalar of
/// the name; `data` is then left without, as by ImageData::ReleaseRawPointer. Otherwise the pixels are copied
/// into plane 0, and `data` stays as it was. Scales stay.
/// \throws RTE::VerificationFailed "Invalid plane index 0" for a frame without planes, "Size of TS and plane
/// must be equal."
/// \{
template <typename T>
DATAOBJECTS_DATAOBJECTS_EXPORT void MoveScalarFieldToFrameT(ImageData<T>& data, BufferApi::I_Frame& frame,
                                                            const QString& name);
/// \throws RTE::Exception "Unsupported image data type" unless it is one of the six
DATAOBJECTS_DATAOBJECTS_EXPORT void MoveScalarFieldToFrame(ImageDataVariant& data, BufferApi::I_Frame& frame,
                                                           const QString& name);
/// \}

/// Moves all fields as MoveScalarFieldToFrame does, with their scales, and clears `fields`: whoever holds one
/// of them holds it without pixels. Those of a frame are copied instead, and that frame stays as it was.
DATAOBJECTS_DATAOBJECTS_EXPORT void MoveScalarFieldsToFrame(ScalarFields&& fields,
                                                            BufferApi::I_FrameImage& frame);

/// The same for the fields of all planes of a volume, each into the plane of its z. The scale is that of the
/// first plane; arrays are taken over when all planes own theirs.
/// \throws RTE::VerificationFailed "Image volume field and image frame have different depth", "Size of TS and
/// plane must be equal.", "Scalar field 'name' is not existing." when a plane lacks a field of the first,
/// "bad scalar field cast" when it has another type there
DATAOBJECTS_DATAOBJECTS_EXPORT void MoveScalarFieldsFromVolumeToFrame(ImageVolumeVariant& volume,
                                                                      BufferApi::I_FrameImage& frame);

} // namespace DataObjects
