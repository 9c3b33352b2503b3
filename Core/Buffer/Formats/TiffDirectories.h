// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/InputFile.h"

#include <vector>

namespace BufferApi::Formats
{

/// Where the directories of all pages stand, in order, classic or BigTIFF, without those that are marked as
/// reduced copies or as masks. libtiff walks a chain of directories too, with an effort that grows with its
/// square. \throws RTE::FileReadError for a chain that is broken or endless, and for no pages
[[nodiscard]] std::vector<unsigned long long> tiffDirectories(const InputFile& file);

} // namespace BufferApi::Formats
