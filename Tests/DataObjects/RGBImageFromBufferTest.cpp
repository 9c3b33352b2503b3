// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/RGBImageFromBuffer.h"

#include "Core/Buffer/FrameBuilder.h"
#include "Core/Common/AttributeNames.h"
#include "Core/DataObjects/BufferAttributes.h"
#include "Core/DataObjects/BufferLibDataAccess.h"
#include "Core/DataObjects/MaskFromBuffer.h"
#include "Core/DataObjects/RGBImageBufferFromBuffer.h"
#include "Core/DataObjects/ScalarField.h"
#include "Core/DataObjects/ScalarFieldFromFrame.h"
#include "Tests/Support/ImageFrames.h"
#include "Tests/Support/Raises.h"

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using BufferApi::I_Buffer;
using BufferApi::I_Frame;
using BufferApi::I_FrameImage;
using BufferApi::RgbQuad;
using Size = Math::Size2T<unsigned int>;

void mark(const I_Buffer& buffer, unsigned int frame, const AttributeValue& code)
{
    BufferAttributes(*buffer.GetFrame(frame)).set(Attr::rgbFrame, code);
}

/// Mask, scales, attributes and scalar fields are those of the frame.
void expectCompanions(const RGBImage& image, I_Frame& frame, unsigned int z)
{
    const Mask mask = GetMask(frame, z);
    EXPECT_TRUE(std::equal(image.GetMask().begin(), image.GetMask().end(), mask.begin()));
    EXPECT_FALSE(AllValuesValid(image));
    EXPECT_TRUE(image.GetMask().HasOwnerShip());
    EXPECT_EQ(image.GetScaleX(), frame.GetScaleX());
    EXPECT_EQ(image.GetScaleY(), frame.GetScaleY());
    EXPECT_EQ(image.GetScaleI(), frame.GetScaleI());
    AttributesContainer attributes{BufferAttributes(frame)};
    attributes.remove(Attr::rgbFrame);
    EXPECT_FALSE(attributes.isEmpty());
    EXPECT_EQ(image.GetAttributes().toStdVector().size(), attributes.toStdVector().size());
    const auto field = image.GetScalarFields().Get(QStringLiteral("Peak ratio"));
    const auto expected = GetScalarField(frame, "Peak ratio", z);
    const auto& actualPixels = CastScalarFieldTo<float>(*field);
    const auto& expectedPixels = CastScalarFieldTo<float>(*expected);
    EXPECT_EQ(actualPixels.GetPixel(30, 16), expectedPixels.GetPixel(30, 16));
    EXPECT_EQ(field->GetScaleI(), expected->GetScaleI());
}

TEST(RGBImageFromBufferTest, ReadsPackedColour)
{
    const auto buffer = imageBuffer(BufferApi::DT_RGB, 2, 2);
    I_Frame& frame = *buffer->GetFrame(1);
    const RGBImage image = createRGBImageFromBuffer(*buffer, 1, 1);
    ASSERT_EQ(image.GetWidth(), 31U);
    ASSERT_EQ(image.GetHeight(), 17U);
    const auto* const quads = Private::GetPlaneData<RgbQuad>(frame, 1);
    for (unsigned int i = 0; i < image.size(); ++i) {
        ASSERT_EQ(image[i], Rgb16(quads[i].red, quads[i].green, quads[i].blue)) << i;
    }
    expectCompanions(image, frame, 1);
}

TEST(RGBImageFromBufferTest, ReadsMosaics)
{
    const auto buffer = imageBuffer(BufferApi::DT_WORD, 2, 2);
    mark(*buffer, 1, 513);
    I_Frame& frame = *buffer->GetFrame(1);
    const RGBImage image = createRGBImageFromBuffer(*buffer, 1, 1);
    const auto* const words = Private::GetPlaneData<unsigned short>(frame, 1);
    EXPECT_EQ(image(2, 1).red, words[31 + 2]);
    EXPECT_EQ(image(2, 2).green, words[2 * 31 + 2]);
    EXPECT_EQ(image(3, 2).blue, words[2 * 31 + 3]);
    EXPECT_FALSE(image.GetAttributes().contains(Attr::rgbFrame));
    expectCompanions(image, frame, 1);
    EXPECT_TRUE(BufferAttributes(frame).contains(Attr::rgbFrame));
}

TEST(RGBImageFromBufferTest, TellsWhatIsNoColour)
{
    const QString invalidFrame = "Invalid RGB frame";
    const QString invalidType = "Invalid RGB image type";
    const auto refuses = [](const QString& text, const I_Buffer& buffer, unsigned int frame, unsigned int z) {
        EXPECT_TRUE(raises(text, [&] { return createRGBImageFromBuffer(buffer, frame, z); }));
    };
    const auto colour = imageBuffer(BufferApi::DT_RGB, 1, 1);
    refuses(invalidFrame, *colour, 1, 0);
    refuses(invalidFrame, *colour, 0, 1);
    const std::unique_ptr<RgbQuad[]> released(
        static_cast<RgbQuad*>(Private::findPixelPlane(*colour->GetFrame(0), 0)->ReleaseData()));
    refuses(invalidFrame, *colour, 0, 0);

    const auto words = imageBuffer(BufferApi::DT_WORD, 1, 1);
    refuses(invalidFrame, *words, 0, 0);
    for (const char* const code : {"0", "0.0", "abc"}) {
        mark(*words, 0, code);
        refuses(invalidFrame, *words, 0, 0);
    }
    mark(*words, 0, 2);
    refuses("Invalid RGBFrame attribute: 2", *words, 0, 0);
    mark(*words, 0, 1);
    refuses(invalidFrame, *words, 0, 1);
    refuses(invalidFrame, *words, 1, 0);

    const auto floats = imageBuffer(BufferApi::DT_FLOAT, 1, 1);
    refuses(invalidType, *floats, 0, 0);
    mark(*floats, 0, 1);
    refuses(invalidType, *floats, 0, 0);

    const auto vectors = bufferOf(BufferApi::CreateVectorFrame2C(4, 4, 1, 1));
    mark(*vectors, 0, 1);
    refuses(invalidFrame, *vectors, 0, 0);
}

TEST(RGBImageFromBufferTest, PlanesOutOfAFileNeedNotHaveTheSizeOfTheirFrame)
{
    const Size size(300, 200);
    const std::vector<std::pair<Size, Size>> sizesOfPixelsAndMask{
        {{30, 20}, size}, {{200, 300}, size}, {size, {1, 1}}, {size, {301, 200}}};
    for (const auto& [pixels, mask] : sizesOfPixelsAndMask) {
        SCOPED_TRACE(testing::Message() << pixels.width << ", " << mask.width);
        auto frame = frameOfParts(
            BufferApi::FrameKind::Rgb, size.width, size.height,
            onePlane(I_FrameImage::COMPONENT_PIXEL, BufferApi::DT_RGB, pixels.width, pixels.height),
            onePlane(I_Frame::COMPONENT_MASK, BufferApi::DT_BYTE, mask.width, mask.height));
        const auto buffer = bufferOf(frame.release());
        EXPECT_TRUE(raises("Invalid RGB frame", [&] { return createRGBImageFromBuffer(*buffer, 0, 0); }));
    }
}

TEST(RGBImageFromBufferTest, ReadsWholeBuffers)
{
    const auto buffer = imageBuffer(BufferApi::DT_RGB, 1, 2);
    buffer->AddFrame(imageFrame(BufferApi::DT_WORD, 1, 3).release());
    mark(*buffer, 2, 1);
    const RGBImageBuffer images = createRGBImageBufferFromBuffer(*buffer);
    ASSERT_EQ(images.size(), 3U);
    EXPECT_FALSE(images.GetName().isEmpty());
    EXPECT_EQ(images.GetName(), buffer->GetName());
    EXPECT_FALSE(images.GetGlobalAttributes().isEmpty());
    EXPECT_EQ(images.GetGlobalAttributes().toStdVector().size(),
              BufferAttributes(*buffer).toStdVector().size());
    for (unsigned int i = 0; i < 3; ++i) {
        expectCompanions(images.getFrame(i), *buffer->GetFrame(i), 0);
    }
    EXPECT_TRUE(createRGBImageBufferFromBuffer(*bufferOf()).empty());
}

TEST(RGBImageFromBufferTest, ReadsWholeImageBuffers)
{
    ImageBuffer<unsigned short> buffer(4, 3, 1, 2, 9, true);
    buffer.SetName("Run");
    buffer.GetGlobalAttributes().set("Number", 7);
    for (const auto& frame : buffer) {
        frame->GetAttributes().set(Attr::rgbFrame, 1);
    }
    const RGBImageBuffer images = createRGBImageBufferFromImageBuffer(buffer);
    ASSERT_EQ(images.size(), 2U);
    EXPECT_EQ(images.getFrame(1)(3, 2), Rgb16(9, 9, 9));
    EXPECT_EQ(images.GetName(), "Run");
    EXPECT_EQ(images.GetGlobalAttributes().attributeValue("Number").value<int>(), 7);

    auto unmarked = buffer;
    unmarked.getFrame(1).GetAttributes().set(Attr::rgbFrame, 0);
    ImageBuffer<float> floats(4, 3, 1, 1, true);
    floats.getFrame(0).GetAttributes().set(Attr::rgbFrame, 1);
    const ImageBuffer<unsigned short> deep(4, 3, 2, 1, true);
    const auto hollow = buffer;
    Image<unsigned short>& plane = hollow.begin()[0]->getPlane(0);
    const std::unique_ptr<unsigned short[]> pixels(plane.GetImageData().ReleaseRawPointer());
    expectRaised({{"not a rgb frame", [&] { return createRGBImageBufferFromImageBuffer(unmarked); }},
                  {"Invalid RGB image type", [&] { return createRGBImageBufferFromImageBuffer(floats); }},
                  {"RGB image buffer doesn't support multiply z planes.",
                   [&] { return createRGBImageBufferFromImageBuffer(deep); }},
                  {"data-pointer is null", [&] { return createRGBImageBufferFromImageBuffer(hollow); }}});
    const Image<unsigned short> target(std::move(plane));
    EXPECT_TRUE(raises("data-pointer is null", [&] { return createRGBImageFromImage(plane); }));
}

TEST(RGBImageFromBufferTest, VolumesAreRefused)
{
    for (const auto type : {BufferApi::DT_RGB, BufferApi::DT_WORD, BufferApi::DT_FLOAT}) {
        const auto buffer = imageBuffer(type, 2, 1);
        EXPECT_TRUE(raises("RGB image buffer doesn't support multiply z planes.",
                           [&] { return createRGBImageBufferFromBuffer(*buffer); }));
    }
}

} // namespace
