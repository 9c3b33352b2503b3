// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

namespace TestSupport
{

/// For TYPED_TEST_SUITE.
using PixelTypeList = testing::Types<unsigned char, unsigned short, int, unsigned int, float, double>;

} // namespace TestSupport
