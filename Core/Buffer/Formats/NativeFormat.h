// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/FileFormat.h"

namespace BufferApi::Formats
{

/// The native file: HDF5 that is also netCDF-4, described in docs/FileFormat.md. It holds every buffer that
/// the store can. Of the options "PackType" is used.
[[nodiscard]] std::unique_ptr<const FileFormat> createNativeFormat();

} // namespace BufferApi::Formats
