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
    struct Case
    {
        AttributeValue value;
        bool isMosaic;
    };
    for (const Case& each : {Case{1, true},
                             {257, true},
                             {42, true},
                             {0, false},
                             {-1, false},
                             {0.5, false},
                             {1.5, true},
                             {QStringLiteral("769"), true},
                             {QStringLiteral("0.0"), false},
                             {QStringLiteral("abc"), false},
                             {QString(), false},
                             {std::vector<int>{1}, true},
                             {std::vector<int>{1, 1}, false}}) {
        SCOPED_TRACE(each.value.toStdString());
        Image<unsigned short> image(2, 2, true);
        EXPECT_FALSE(isBayerPatternImage(image));
        image.GetAttributes().set("RGBFrame", each.value);
        EXPECT_EQ(isBayerPatternImage(image), each.isMosaic);

        const auto buffer = bufferOf(BufferApi::CreateImageFrame(BufferApi::DT_WORD, 2, 2, 1),
                                     BufferApi::CreateImageFrame(BufferApi::DT_WORD, 2, 2, 1));
        EXPECT_FALSE(hasBayerPatternImage(*buffer));
        BufferAttributes(*buffer->GetFrame(1)).set("RGBFrame", each.value);
        EXPECT_EQ(isBayerPatternImage(*buffer->GetFrame(1)), each.isMosaic);
        EXPECT_EQ(isBayerPatternImage(*buffer, 1), each.isMosaic);
        EXPECT_FALSE(isBayerPatternImage(*buffer, 0));
        EXPECT_FALSE(isBayerPatternImage(*buffer, 2));
        EXPECT_EQ(hasBayerPatternImage(*buffer), each.isMosaic);
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
