// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/Rgb16.h"

#include "Core/Common/Exception.h"
#include "Core/Common/Settings.h"

#include <gtest/gtest.h>

namespace
{

using namespace DataObjects;

static_assert(Rgb16(0x00112233U) == Rgb16(0x11, 0x22, 0x33));
static_assert(Rgb16(0xFEDCBA98U) == Rgb16(0xFEDC, 0xBA, 0x98), "red takes all that stands above bit 15");
static_assert(Rgb16(1, 2, 3) != Rgb16(1, 2, 4) && Rgb16(1, 2, 3) != Rgb16(0, 2, 3) &&
              Rgb16(1, 2, 3) != Rgb16(1, 0, 3));
static_assert(Rgb16(65000, 0, 65535) + Rgb16(1000, 7, 65535) == Rgb16(65535, 7, 65535));
static_assert(Rgb16(0, 5, 65535) - Rgb16(1, 3, 1) == Rgb16(0, 2, 65534));
static_assert(Rgb16(1, 2, 2).Intensity() == 5.0F / 3.0F);
static_assert(Rgb16(65535, 65535, 65535).Intensity() == 65535.0F);
static_assert(Rgb16(1, 9, 3).maxComponent() == 9 && Rgb16() == Rgb16(0, 0, 0));

TEST(Rgb16Test, GoesThroughSettings)
{
    Storage::Settings settings;
    EXPECT_EQ(&Rgb16(65535, 2, 300).SerializeTo(settings), &settings);
    EXPECT_TRUE(settings.IsClass("Rgb16"));
    EXPECT_EQ(settings.GetVersion(), 1U);
    Rgb16 read;
    read.DeserializeFrom(settings);
    EXPECT_EQ(read, Rgb16(65535, 2, 300));

    settings.Remove("red");
    read.DeserializeFrom(settings);
    EXPECT_EQ(read, Rgb16(0, 2, 300));
    settings.Set("green", 65536);
    EXPECT_THROW(read.DeserializeFrom(settings), RTE::ParseError);
}

} // namespace
