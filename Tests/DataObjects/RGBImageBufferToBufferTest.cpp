// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/RGBImageBufferToBuffer.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/Common/AttributeNames.h"
#include "Core/DataObjects/BufferAttributes.h"
#include "Core/DataObjects/BufferLibDataAccess.h"
#include "Core/DataObjects/RGBImageBufferFromBuffer.h"
#include "Core/DataObjects/RGBImageToImage.h"
#include "Tests/DataObjects/Companions.h"
#include "Tests/Support/Raises.h"
#include "Tests/Support/SamePixels.h"

#include <QTemporaryDir>

#include <random>

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using BufferApi::I_Buffer;
using BufferApi::RgbQuad;

/// Two frames of 33 x 9 random pixels with all companions; only the second one has an invalid pixel.
RGBImageBuffer recording(unsigned int bits)
{
    RGBImageBuffer buffer(33, 9, 2, Rgb16(), true);
    buffer.SetName("Run");
    buffer.GetGlobalAttributes().set("Number", 8);
    std::mt19937 generator(bits);
    const auto next = [&] { return static_cast<unsigned short>(generator() >> (32 - bits)); };
    for (const auto& frame : buffer) {
        for (Rgb16& pixel : *frame) {
            pixel = Rgb16(next(), next(), next());
        }
        addCompanions(*frame);
    }
    buffer.getFrame(0).GetMask().Fill(true);
    return buffer;
}

void expectRecording(const RGBImageBuffer& buffer, double factorI = 3.0)
{
    EXPECT_EQ(buffer.GetName(), "Run");
    EXPECT_EQ(buffer.GetGlobalAttributes().attributeValue("Number").value<int>(), 8);
    ASSERT_EQ(buffer.size(), 2U);
    EXPECT_TRUE(AllValuesValid(buffer.getFrame(0)));
    EXPECT_TRUE(buffer.getFrame(1).IsMaskValid(31, 8));
    RGBImage first = buffer.getFrame(0);
    first.GetMask().SetValid(32, 8, false);
    RGBImage second = buffer.getFrame(1);
    for (RGBImage* const frame : {&first, &second}) {
        EXPECT_EQ(frame->GetScaleI().getFactor(), factorI);
        frame->GetScaleI().setFactor(3.0);
        expectCompanions(*frame);
    }
}

/// Read from a file of the buffer, whose planes are loaded when they are asked for.
RGBImageBuffer throughAFile(const I_Buffer& buffer)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("colour.qfi");
    BufferApi::ExportBuffer(&buffer, path, {});
    return createRGBImageBufferFromBuffer(*std::unique_ptr<I_Buffer>(BufferApi::ImportBuffer(path, {})));
}

TEST(RGBImageBufferToBufferTest, EightBitsComeBackThroughAFile)
{
    const RGBImageBuffer buffer = recording(8);
    const auto written = createRGB32BufferFromRGBImageBuffer(buffer);
    EXPECT_FALSE(written->GetFrame(0)->HasMask());
    EXPECT_TRUE(written->GetFrame(1)->HasMask());
    EXPECT_NE(dynamic_cast<BufferApi::I_FrameRGB32*>(written->GetFrame(0)), nullptr);
    const auto* const quads = Private::GetPlaneData<RgbQuad>(*written->GetFrame(1), 0);
    const Rgb16& pixel = buffer.getFrame(1)(32, 8);
    EXPECT_EQ(quads[296],
              (RgbQuad{static_cast<unsigned char>(pixel.blue), static_cast<unsigned char>(pixel.green),
                       static_cast<unsigned char>(pixel.red), 0}));
    const RGBImageBuffer read = throughAFile(*written);
    expectRecording(read);
    for (unsigned int i = 0; i < 2; ++i) {
        EXPECT_TRUE(samePixels(read.getFrame(i), buffer.getFrame(i)));
    }
}

TEST(RGBImageBufferToBufferTest, TheHighBitsOfTheDeepestFrameRemain)
{
    RGBImageBuffer buffer = recording(8);
    RGBImage& deep = buffer.getFrame(0);
    deep = Rgb16(4095, 2047, 15);
    deep.GetAttributes().set(Attr::cameraMaxIntensity, 4095);
    deep(1, 0) = Rgb16(65535, 4096, 16);
    buffer.getFrame(1)(0, 0) = Rgb16(255, 15, 16);
    const RGBImageBuffer read = createRGBImageBufferFromBuffer(*createRGB32BufferFromRGBImageBuffer(buffer));
    expectRecording(read, 48.0);
    EXPECT_EQ(read.getFrame(0)(0, 0), Rgb16(255, 127, 0));
    EXPECT_EQ(read.getFrame(0)(1, 0), Rgb16(255, 255, 1));
    EXPECT_EQ(read.getFrame(1)(0, 0), Rgb16(15, 0, 1));
    EXPECT_EQ(read.getFrame(0).GetBitDepth(), 8);
    EXPECT_EQ(read.getFrame(0).GetAttributes().attributeValue(Attr::cameraMaxIntensity).value<int>(), 255);
    EXPECT_EQ(buffer.getFrame(0)(0, 0), Rgb16(4095, 2047, 15));
    EXPECT_EQ(buffer.getFrame(0).GetScaleI(), scaleOf(3.0, 4.0));
}

TEST(RGBImageBufferToBufferTest, WhatWasWrittenOnceLosesNoBitsAgain)
{
    const std::vector<std::tuple<double, unsigned short, Rgb16>> maximumDepthAndPixel{
        {100000, 16, {196, 0, 255}}, {4095, 8, {255, 100, 255}}, {31, 8, {255, 100, 255}}};
    for (const auto& [maximum, depth, expected] : maximumDepthAndPixel) {
        SCOPED_TRACE(maximum);
        RGBImageBuffer buffer(2, 2, 1, Rgb16(50176, 100, 65535), true);
        buffer.getFrame(0).GetAttributes().set(Attr::cameraMaxIntensity, maximum);
        buffer.getFrame(0).SetBitDepth(depth);
        for (int i = 0; i < 2; ++i) {
            buffer = createRGBImageBufferFromBuffer(*createRGB32BufferFromRGBImageBuffer(buffer));
            EXPECT_EQ(buffer.getFrame(0)(1, 1), expected);
            EXPECT_EQ(buffer.getFrame(0).GetBitDepth(), 8);
        }
    }
}

TEST(RGBImageBufferToBufferTest, WordFramesAreMosaics)
{
    const RGBImageBuffer buffer = recording(12);
    for (const int pattern : {1, 769}) {
        const auto written = createBufferFromRGBImageBuffer(buffer, pattern);
        ASSERT_EQ(written->GetFrameCount(), 2U);
        EXPECT_EQ(written->GetFrame(0)->GetDataType(), BufferApi::DT_WORD);
        EXPECT_FALSE(written->GetFrame(0)->HasMask());
        const auto expected = createBayerPatternImageFromRGBImage(buffer.getFrame(1), pattern);
        const auto* const words = Private::GetPlaneData<unsigned short>(*written->GetFrame(1), 0);
        EXPECT_TRUE(std::equal(expected.begin(), expected.end(), words));
        const BufferAttributes attributes(*written->GetFrame(1));
        EXPECT_EQ(attributes.attributeValue(Attr::rgbFrame).value<int>(), pattern);
        expectRecording(throughAFile(*written));
    }
    EXPECT_TRUE(
        raises("Invalid RGBFrame attribute: 2", [&] { return createBufferFromRGBImageBuffer(buffer, 2); }));
}

TEST(RGBImageBufferToBufferTest, NothingBecomesNothing)
{
    EXPECT_EQ(createRGB32BufferFromRGBImageBuffer(RGBImageBuffer())->GetFrameCount(), 0U);
    EXPECT_EQ(createBufferFromRGBImageBuffer(RGBImageBuffer())->GetFrameCount(), 0U);
}

} // namespace
