// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/Hdf5.h"
#include "Core/Buffer/Formats/NativeLayout.h"
#include "Core/Buffer/I_Buffer.h"

/// Scales and buffer attributes as attributes of the file.
namespace BufferApi::Formats::Native
{

/// What a scale belongs to: coordinates carry factor and offset always, data only where they change values,
/// since readers turn integers into floats then.
enum class ScaleUse
{
    Coordinate,
    Data
};

/// Writes `scale_factor`, `add_offset`, `units` and `long_name`.
void writeScale(Hdf5::Object& object, const ScaleValue& scale, ScaleUse use);

/// Puts the scale out of sight of other programs: a set whose frames differ in it has no one scale, and a
/// wrong one is worse than none.
void hideScale(Hdf5::Object& object);

/// Finds a scale, hidden or not.
[[nodiscard]] ScaleValue readScale(const Hdf5::Attributes& attributes);

/// Writes any text: under `name` as far as HDF5 can hold it, and what it cannot as JSON beside it.
void writeAnyText(Hdf5::Object& object, const std::string& name, const QString& text);
[[nodiscard]] QString readAnyText(const Hdf5::Attributes& attributes, const std::string& name);

/// \name Texts and lists of any length, in pieces as long as an attribute may be: `name`, `name_2`, `name_3`
/// …
/// @{
void writeLongText(Hdf5::Object& object, const std::string& name, const QByteArray& utf8);
[[nodiscard]] std::optional<QByteArray> findLongText(const Hdf5::Attributes& attributes,
                                                     const std::string& name);
void writeLongList(Hdf5::Object& object, const std::string& name, const std::vector<unsigned int>& values);
[[nodiscard]] std::optional<std::vector<double>> findLongList(const Hdf5::Attributes& attributes,
                                                              const std::string& name);
/// @}

/// Writes the attributes that HDF5 can hold as they are, and returns the others as JSON.
[[nodiscard]] QByteArray writeBufferAttributes(Hdf5::Object& root, const AttributeMap& attributes);

/// Creates the attributes that stand in the file under their own names, those that other programs added
/// included; lists of one number may stand there as a single number.
void readBufferAttributes(const Hdf5::Attributes& root, I_Buffer& buffer);

} // namespace BufferApi::Formats::Native
