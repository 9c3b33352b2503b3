// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/Hdf5.h"

#include <string>

namespace BufferApi::Hdf5
{

/// Raises unless the library can read the header of an object, so far as it does not look itself.
///
/// Headers of HDF5's first format, which other programs write unless told otherwise, carry no checksum, and
/// the library believes much of what they say of lengths and counts: damage makes it crash, read elsewhere or
/// take any amount of memory. Headers of the second format are under checksums and left to it.
/// \param name of the object, for the message \param address as the library has it
/// \throws RTE::FileReadError
void checkHeader(const FileContext& file, const std::string& name, unsigned long long address);

/// The same for the root group and what the file tells of itself, to be called before the library opens it.
/// \throws RTE::FileOpenError for files with other addresses than all programs write unless told otherwise
/// \throws RTE::FileReadError
void checkRootHeader(const FileContext& file);

} // namespace BufferApi::Hdf5
