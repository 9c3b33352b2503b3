// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Buffer.h"

#include <limits>

namespace TestSupport
{

/// Asks a buffer for all that it holds, as its users would: frames, the pixels of all components, scales,
/// grids, attributes.
///
/// \param mostBytes stops once so many bytes of pixels are loaded, since a small file may unpack to many
/// \returns a sum over all of it, so that each byte is touched
unsigned long long
readEverything(const BufferApi::I_Buffer& buffer,
               unsigned long long mostBytes = std::numeric_limits<unsigned long long>::max());

} // namespace TestSupport
