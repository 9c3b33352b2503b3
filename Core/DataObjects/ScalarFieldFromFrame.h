// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/ScalarFields.h"

#include <string>

namespace BufferApi
{
class I_Frame;
} // namespace BufferApi

namespace DataObjects
{

/// \file
/// Scalar fields out of the frame store, where they are the typed scalars of a frame: the field "Foo" is the
/// component "TS:Foo", with one plane for each z and one intensity scale for all of them. A component named
/// "TS:" alone is no field. Names are Latin-1 in the store.
///
/// \code
/// const auto fields = GetScalarFields(*frame, 0); // what is written to them is written to the frame
/// fields->Add("Peak ratio", 1.0F);
/// const std::unique_ptr<ScalarFieldVariant> copy = GetScalarField(*frame, "Peak ratio", 0);
/// \endcode

[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT bool ContainsScalarField(const BufferApi::I_Frame& frame,
                                                                      const std::string& name);

/// A field of its own with a copy of the pixels and of the scale; a plane that is still in its file stays
/// there. \throws RTE::VerificationFailed "No scalar field of name 'name' found.", the same with "for given
/// plane" \throws RTE::Exception "RGB scalar field is not supported.", "Scalar field has unsupported data
/// type"
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ScalarFieldVariant>
GetScalarField(const BufferApi::I_Frame& frame, const std::string& name, unsigned int plane);

/// The fields of one plane as a view: all changes of the collection and of its fields are changes of the
/// frame, which must outlive it. Private::ScalarFieldsOnFrame tells more.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::unique_ptr<ScalarFields>
GetScalarFields(BufferApi::I_Frame& frame, unsigned int plane);

/// Adds all fields of one plane to `fields`, with the memory of the frame's planes, which are left without;
/// scales are copied. All planes are looked at, and read from the file, before the first is taken.
/// \throws RTE::VerificationFailed "Invalid plane index z" with the number, "Source scalar field has wrong
/// size.", "data-pointer is null" when memory was given up before \throws RTE::Exception as GetScalarField
DATAOBJECTS_DATAOBJECTS_EXPORT void MoveScalarFieldFromFrame(ScalarFields& fields, BufferApi::I_Frame&& frame,
                                                             unsigned int plane);

} // namespace DataObjects
