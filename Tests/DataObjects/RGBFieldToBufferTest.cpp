// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/RGBFieldToBuffer.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/DataObjects/BufferLibDataAccess.h"
#include "Tests/Support/Raises.h"

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using BufferApi::RgbQuad;

const std::vector<RgbQuad> pixels{{0, 0, 0, 9}, {1, 2, 3, 9}, {255, 255, 255, 9},
                                  {1, 0, 0, 9}, {0, 1, 0, 9}, {0, 0, 1, 9}};

/// A row of vectors and more, so that every lane is used.
std::vector<RgbQuad> manyPixels()
{
    std::vector<RgbQuad> many(201);
    for (std::size_t i = 0; i < many.size(); ++i) {
        many[i] = pixels[i % pixels.size()];
    }
    return many;
}

TEST(RGBFieldToBufferTest, GivesGrayWords)
{
    const std::vector<RgbQuad> many = manyPixels();
    const RGBField field{67, 3, many.data()};
    const std::array<unsigned short, 6> sums{0, 6, 765, 1, 1, 1};
    const std::array<unsigned short, 6> weighted{0, (2 * 587 + 3 * 299 + 114) / 4, 63750, 28, 146, 74};
    for (const bool sum : {true, false}) {
        const ImageData<unsigned short> data = CreateImageDataWordFromRGBField(field, sum);
        const auto buffer = CreateWordBufferFromRGBField(field, sum);
        EXPECT_EQ(data.GetWidth(), 67U);
        EXPECT_EQ(data.GetHeight(), 3U);
        ASSERT_EQ(buffer->GetFrameCount(), 1U);
        EXPECT_EQ(buffer->GetFrame(0)->GetWidth(), 67U);
        const auto* const words = Private::GetPlaneData<unsigned short>(*buffer->GetFrame(0), 0);
        for (std::size_t i = 0; i < many.size(); ++i) {
            ASSERT_EQ(data[i], (sum ? sums : weighted)[i % 6]) << i;
            ASSERT_EQ(words[i], data[i]) << i;
        }
    }
}

TEST(RGBFieldToBufferTest, GivesColourFrames)
{
    const auto buffer = CreateRGBBufferFromRGBField({3, 2, pixels.data()});
    ASSERT_EQ(buffer->GetFrameCount(), 1U);
    const BufferApi::I_Frame& frame = *buffer->GetFrame(0);
    EXPECT_EQ(frame.GetWidth(), 3U);
    EXPECT_EQ(frame.GetHeight(), 2U);
    const auto* const quads = Private::GetPlaneData<RgbQuad>(frame, 0);
    EXPECT_EQ(quads[1], (RgbQuad{1, 2, 3, 0}));
    EXPECT_EQ(quads[5], (RgbQuad{0, 0, 1, 0}));
}

TEST(RGBFieldToBufferTest, RefusesEmptyFields)
{
    const QString text = "Source image is empty";
    for (const RGBField& field : {RGBField{0, 2, pixels.data()}, {3, 0, pixels.data()}, {3, 2, nullptr}}) {
        expectRaised({{text, [&] { return CreateImageDataWordFromRGBField(field, true); }},
                      {text, [&] { return CreateWordBufferFromRGBField(field, true); }},
                      {text, [&] { return CreateRGBBufferFromRGBField(field); }}});
    }
}

} // namespace
