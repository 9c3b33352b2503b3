// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/Hdf5.h"

#include <QByteArray>

namespace BufferApi::Hdf5
{

/// What an attribute keeps for each text of variable length.
inline constexpr unsigned long long variableTextBytes = 16;

/// The value of an attribute that has one text of variable length, as other programs write them.
///
/// They lie in HDF5's global heaps, which have no checksum, and the library believes what these say of
/// lengths: damage makes it crash, hang or read elsewhere. So it is asked for the place alone, and the heap
/// is read here. \param what names the attribute in an error
[[nodiscard]] QByteArray readVariableText(const FileContext& file, const std::string& what, hid_t attribute);

} // namespace BufferApi::Hdf5
