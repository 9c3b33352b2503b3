// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Buffer.h"

#include <gtest/gtest.h>

namespace TestSupport
{

/// Equal bit for bit in kind, sizes, grid, scales, components with their scales and pixels, and attributes
/// with kind and value; else names the first difference. The order of components does not count.
[[nodiscard]] testing::AssertionResult framesEqual(const BufferApi::I_Frame& a, const BufferApi::I_Frame& b);

/// The same of all frames, the attributes and the name.
[[nodiscard]] testing::AssertionResult buffersEqual(const BufferApi::I_Buffer& a,
                                                    const BufferApi::I_Buffer& b);

/// The same of two planes, either of which may be null.
[[nodiscard]] testing::AssertionResult planesEqual(const BufferApi::I_PlaneBase* a,
                                                   const BufferApi::I_PlaneBase* b);

/// Changes one bit of this plane's pixels in a file that holds them as they are; a failed expectation when
/// they are not there.
void flipBitOf(const BufferApi::I_PlaneBase& plane, const QString& path);

} // namespace TestSupport
