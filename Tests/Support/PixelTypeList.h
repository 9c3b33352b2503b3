// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/PixelTypes.h"

#include <gtest/gtest.h>

namespace TestSupport
{

/// For TYPED_TEST_SUITE.
using PixelTypeList = testing::Types<unsigned char, unsigned short, int, unsigned int, float, double>;

/// Calls `visitor` with the PixelTypes::Tag of each element type.
template <typename Visitor>
void forEachPixelType(Visitor visitor)
{
#define DATAOBJECTS_VISIT(type, number, name)                                                                \
    {                                                                                                        \
        SCOPED_TRACE(#type);                                                                                 \
        visitor(PixelTypes::Tag<type>{});                                                                    \
    }
    DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_VISIT)
#undef DATAOBJECTS_VISIT
}

} // namespace TestSupport
