// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/RGBImageBuffer.h"

#include "Core/DataObjects/RGBImageToImage.h"
#include "Core/DataObjects/ScalarField.h"
#include "Tests/Support/Raises.h"
#include "Tests/Support/Scales.h"

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using Size = Math::Size2T<unsigned int>;
using Words = ImageBuffer<unsigned short>;

int numberIn(const Attributes& attributes)
{
    return attributes.attributeValue("Number").value<int>();
}

/// Frame i has the colour (i, 10 i, 100 i), the attribute "Number" i and scales of factors 1 + i, 2 + i, 3 +
/// i.
RGBImageBuffer recording(unsigned short frames = 3)
{
    RGBImageBuffer buffer(Size(4, 3), frames, Rgb16(), true);
    buffer.SetName("Run");
    buffer.GetGlobalAttributes().set("Number", 77);
    for (unsigned short i = 0; i < frames; ++i) {
        RGBImage& frame = buffer.getFrame(i);
        frame = Rgb16(i, static_cast<unsigned short>(10 * i), static_cast<unsigned short>(100 * i));
        frame.GetAttributes().set("Number", static_cast<int>(i));
        frame.GetScaleX() = scaleOf(1 + i);
        frame.GetScaleY() = scaleOf(2 + i);
        frame.GetScaleI() = scaleOf(3 + i);
    }
    return buffer;
}

void expectRecording(const RGBImageBuffer& buffer)
{
    ASSERT_EQ(buffer.size(), 3U);
    EXPECT_EQ(buffer.GetName(), "Run");
    EXPECT_EQ(numberIn(buffer.GetGlobalAttributes()), 77);
    EXPECT_EQ(buffer.getFrame(2)(3, 2), Rgb16(2, 20, 200));
    EXPECT_EQ(numberIn(buffer.getFrame(2).GetAttributes()), 2);
    EXPECT_EQ(buffer.getFrame(2).GetScaleI(), scaleOf(5));
}

TEST(RGBImageBufferTest, HoldsFramesOfAnySize)
{
    RGBImageBuffer buffer;
    EXPECT_TRUE(buffer.AllFramesHaveSameSize());
    EXPECT_TRUE(AllValuesValid(buffer));
    buffer.AppendImage(RGBImage(4, 3, Rgb16(1, 2, 3), true));
    const RGBImage larger(7, 5, Rgb16(4, 5, 6), false);
    EXPECT_TRUE(buffer.AllFramesHaveSameSize());
    EXPECT_TRUE(AllValuesValid(buffer));
    buffer.AppendImage(larger);
    EXPECT_FALSE(buffer.AllFramesHaveSameSize());
    EXPECT_FALSE(AllValuesValid(buffer));
    EXPECT_EQ(buffer.GetWidth(1), 7U);
    EXPECT_EQ(buffer.GetHeight(1), 5U);
    EXPECT_EQ(buffer.GetSize(0), Size(4, 3));

    const QString text = "Invalid frame index";
    expectRaised({{text, [&] { return buffer.getFrame(2); }},
                  {text, [&] { return std::as_const(buffer).getFrame(2); }},
                  {text, [&] { return buffer.GetWidth(2); }},
                  {text, [&] { return buffer.GetHeight(2); }},
                  {text, [&] { return buffer.GetSize(2); }}});
}

TEST(RGBImageBufferTest, TravelsAsAVariantByDeepCopies)
{
    RGBImageBuffer buffer = recording();
    const std::unique_ptr<Variant> copy = static_cast<const Variant&>(buffer).createCopy();
    EXPECT_EQ(copy->getTypeIdentifier(), "RGBImageBuffer");
    RGBImageBuffer assigned(9, 9, 1, Rgb16(), true);
    const std::shared_ptr<RGBImage> held = assigned[0];
    assigned = buffer;
    EXPECT_EQ(held->GetSize(), Size(9, 9));
    buffer = Rgb16(9, 9, 9);
    EXPECT_EQ(buffer.getFrame(2)(3, 2), Rgb16(9, 9, 9));
    expectRecording(assigned);
    expectRecording(dynamic_cast<const RGBImageBuffer&>(*copy));
    RGBImageBuffer& self = assigned;
    assigned = std::move(self);
    const RGBImageBuffer moved(std::move(assigned));
    expectRecording(moved);

    const RGBImageBuffer made({RGBImage(1, 1, Rgb16(1, 2, 3), true), RGBImage(2, 2, Rgb16(), false)},
                              moved.GetGlobalAttributes());
    EXPECT_EQ(made.getFrame(0)(0, 0), Rgb16(1, 2, 3));
    EXPECT_EQ(numberIn(made.GetGlobalAttributes()), 77);
}

TEST(RGBImageBufferTest, GivesAndTakesAllAttributesAndAddsScalarFieldsToAllFrames)
{
    RGBImageBuffer buffer = recording();
    buffer.AddScalarField("Field", scaleOf(4));
    for (const auto& frame : buffer) {
        EXPECT_EQ(frame->GetScalarFields().Get("Field")->GetScaleI(), scaleOf(4));
    }
    const auto all = buffer.getAllAttributes();
    EXPECT_EQ(numberIn(all), 77);
    ASSERT_EQ(all.frameAttributes.size(), 3U);
    EXPECT_EQ(numberIn(all.frameAttributes[1]), 1);
    EXPECT_EQ(all.scalesX, (std::vector{scaleOf(1), scaleOf(2), scaleOf(3)}));
    EXPECT_EQ(all.scalesY, (std::vector{scaleOf(2), scaleOf(3), scaleOf(4)}));
    EXPECT_EQ(all.scalesI, (std::vector{scaleOf(3), scaleOf(4), scaleOf(5)}));
    EXPECT_EQ(all.scalesZ, std::vector(3, Zt::LinearScale(Zt::ScalePreset::Z)));

    RGBImageBuffer target(1, 1, 3, Rgb16(), true);
    target.GetGlobalAttributes().set("Old", 1);
    target.getFrame(1).GetAttributes().set("Old", 1);
    target.setAllAttributes(all);
    EXPECT_EQ(numberIn(target.GetGlobalAttributes()), 77);
    EXPECT_FALSE(target.GetGlobalAttributes().contains("Old"));
    EXPECT_EQ(numberIn(target.getFrame(1).GetAttributes()), 1);
    EXPECT_FALSE(target.getFrame(1).GetAttributes().contains("Old"));
    RGBImageBuffer shorter(1, 1, 2, Rgb16(), true);
    EXPECT_TRUE(raises("Mismatch between frame count and frame attributes count",
                       [&] { shorter.setAllAttributes(all); }));
}

TEST(RGBImageBufferTest, JoinsThreeBuffersAndComesApart)
{
    const RGBImageBuffer buffer = recording();
    const Words red = buffer.redImage();
    const Words green = buffer.greenImage();
    const ImageBuffer<float> intensity = buffer.intensityImage();
    EXPECT_EQ(intensity.getFrame(2).GetVoxel(3, 2, 0), 74.0F);
    EXPECT_EQ(intensity.GetName(), "Run");
    EXPECT_EQ(numberIn(green.GetGlobalAttributes()), 77);
    EXPECT_EQ(numberIn(green.getFrame(1).GetAttributes()), 1);
    expectRecording(RGBImageBuffer(red, green, buffer.blueImage()));

    const Words deep(4, 3, 2, 3, true);
    expectRaised(
        {{"The frame count of the R/G/B images aren't equal",
          [&] { RGBImageBuffer(red, green, Words(4, 3, 1, 2, true)); }},
         {"RGB image buffer doesn't support multiply z planes.", [&] { RGBImageBuffer(deep, deep, deep); }},
         {"Size of the R/G/B frames aren't equal",
          [&] { RGBImageBuffer(red, green, Words(3, 4, 1, 3, true)); }}});
    EXPECT_TRUE(RGBImageBuffer().redImage().empty());
}

TEST(RGBImageBufferTest, BecomesABufferOfMosaics)
{
    const Words mosaics = createBayerPatternBufferFromRGBImageBuffer(recording(), 257);
    ASSERT_EQ(mosaics.getFrameCount(), 3U);
    EXPECT_EQ(mosaics.GetName(), "Run");
    EXPECT_EQ(numberIn(mosaics.GetGlobalAttributes()), 77);
    // A site of red takes its own pixel, of the row 2 + 1 shares, of the next row 2 + 1 + 1.
    EXPECT_EQ(mosaics.getFrame(2).GetVoxel(1, 0, 0), 2 * (1 + 3 + 4));
    EXPECT_EQ(numberIn(mosaics.getFrame(2).GetAttributes()), 2);
    EXPECT_EQ(mosaics.getFrame(2).GetAttributes().attributeValue("RGBFrame").value<int>(), 257);
}

TEST(RGBImageBufferTest, ComputesFrameByFrame)
{
    const RGBImageBuffer buffer = recording();
    EXPECT_EQ((buffer + Rgb16(1, 0, 65500)).getFrame(2)(3, 2), Rgb16(3, 20, 65535));
    EXPECT_EQ((buffer - Rgb16(1, 30, 0)).getFrame(2)(3, 2), Rgb16(1, 0, 200));
    EXPECT_EQ((buffer + buffer).getFrame(2)(3, 2), Rgb16(4, 40, 400));
    EXPECT_EQ((buffer - buffer).getFrame(2)(3, 2), Rgb16());
    expectRecording(buffer);

    RGBImageBuffer changed = recording();
    changed += changed.getFrame(2)(3, 2);
    EXPECT_EQ(changed.getFrame(2)(0, 0), Rgb16(4, 40, 400));
    EXPECT_EQ(changed.getFrame(0)(0, 0), Rgb16(2, 20, 200));

    const QString text = "Invalid volume sizes";
    RGBImageBuffer otherSize = recording(2);
    otherSize.AppendImage(RGBImage(3, 4, Rgb16(1, 1, 1), true));
    changed = buffer;
    expectRaised({{text, [&] { changed += recording(2); }},
                  {text, [&] { changed -= recording(4); }},
                  {text, [&] { changed += otherSize; }}});
    expectRecording(changed);
}

} // namespace
