// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/InputFile.h"

#include <vector>

namespace BufferApi::Formats
{

/// Where the directories of all pages stand, in order, classic or BigTIFF. libtiff walks a chain of
/// directories too, with an effort that grows with its square.
/// \throws RTE::FileReadError for a chain that is broken, endless or empty
[[nodiscard]] std::vector<unsigned long long> tiffDirectories(const InputFile& file);

} // namespace BufferApi::Formats
