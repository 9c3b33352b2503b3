// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/BayerPattern.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/DataObjects/BufferAttributes.h"
#include "Core/DataObjects/ImageBuffer.h"
#include "Tests/Support/ImageFrames.h"

namespace
{

using namespace DataObjects;
using namespace TestSupport;

TEST(BayerPatternTest, ANumberOfAtLeastOneMarksAMosaic)
{
    const std::vector<AttributeValue> marks{1, 257, 42, 1.5, QStringLiteral("769"), std::vector<int>{1}};
    std::vector<AttributeValue> values{
        0, -1, 0.5, QStringLiteral("0.0"), QStringLiteral("abc"), QString(), std::vector<int>{1, 1}};
    const std::size_t others = values.size();
    values.insert(values.end(), marks.begin(), marks.end());
    for (std::size_t i = 0; i < values.size(); ++i) {
        SCOPED_TRACE(values[i].toStdString());
        const bool isMosaic = i >= others;
        Image<unsigned short> image(2, 2, true);
        EXPECT_FALSE(isBayerPatternImage(image));
        image.GetAttributes().set("RGBFrame", values[i]);
        EXPECT_EQ(isBayerPatternImage(image), isMosaic);

        const auto buffer = bufferOf(BufferApi::CreateImageFrame(BufferApi::DT_WORD, 2, 2, 1),
                                     BufferApi::CreateImageFrame(BufferApi::DT_WORD, 2, 2, 1));
        EXPECT_FALSE(hasBayerPatternImage(*buffer));
        BufferAttributes(*buffer->GetFrame(1)).set("RGBFrame", values[i]);
        EXPECT_EQ(isBayerPatternImage(*buffer->GetFrame(1)), isMosaic);
        EXPECT_EQ(isBayerPatternImage(*buffer, 1), isMosaic);
        EXPECT_FALSE(isBayerPatternImage(*buffer, 0));
        EXPECT_FALSE(isBayerPatternImage(*buffer, 2));
        EXPECT_EQ(hasBayerPatternImage(*buffer), isMosaic);
    }
}

TEST(BayerPatternTest, BuffersAskAllTheirFrames)
{
    ImageBuffer<float> buffer(2, 2, 1, 3, true);
    EXPECT_FALSE(hasBayerPatternImage(buffer));
    buffer.GetGlobalAttributes().set("RGBFrame", 1);
    EXPECT_FALSE(hasBayerPatternImage(buffer));
    buffer.getFrame(2).GetAttributes().set("RGBFrame", 1);
    EXPECT_TRUE(hasBayerPatternImage(buffer));
    EXPECT_FALSE(hasBayerPatternImage(*ImageBuffer<float>::CreateEmptyImageBuffer()));
}

TEST(BayerPatternTest, TheFirstFrameTellsPackedColour)
{
    const auto buffer = bufferOf();
    EXPECT_FALSE(isRGBBuffer(*buffer));
    EXPECT_FALSE(hasBayerPatternImage(*buffer));
    buffer->AddFrame(BufferApi::CreateImageFrame(BufferApi::DT_RGB, 2, 2, 1));
    EXPECT_TRUE(isRGBFrame(*buffer->GetFrame(0)));
    EXPECT_TRUE(isRGBBuffer(*buffer));
    const auto words = bufferOf(BufferApi::CreateImageFrame(BufferApi::DT_WORD, 2, 2, 1),
                                BufferApi::CreateImageFrame(BufferApi::DT_RGB, 2, 2, 1));
    EXPECT_FALSE(isRGBFrame(*words->GetFrame(0)));
    EXPECT_FALSE(isRGBBuffer(*words));
}

} // namespace
