// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/PixelTypes.h"

#include <gtest/gtest.h>

namespace TestSupport
{

/// Calls with the PixelTypes::Tag of each element type.
template <typename Call>
void forAllTypes(Call&& call)
{
#define DATAOBJECTS_CALL(type, number, name)                                                                 \
    {                                                                                                        \
        SCOPED_TRACE(#name);                                                                                 \
        call(PixelTypes::Tag<type>());                                                                       \
    }
    DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_CALL)
#undef DATAOBJECTS_CALL
}

/// Calls with every pair of tags, source first.
template <typename Call>
void forAllPairs(Call&& call)
{
    forAllTypes([&](auto from) { forAllTypes([&](auto to) { call(from, to); }); });
}

} // namespace TestSupport
