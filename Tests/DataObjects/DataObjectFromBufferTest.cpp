// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/DataObjectFromBuffer.h"

#include "Core/Common/AttributeNames.h"
#include "Core/DataObjects/AttributesContainer.h"
#include "Core/DataObjects/BufferStructureInformation.h"
#include "Core/DataObjects/ImageBuffer.h"
#include "Core/DataObjects/RGBImageBuffer.h"
#include "Core/DataObjects/SetTypeId.h"
#include "Core/DataObjects/TypeIdentifier.h"
#include "Tests/Support/Frames.h"
#include "Tests/Support/ImageFrames.h"
#include "Tests/Support/Raises.h"
#include "Tests/Support/SampleBuffers.h"

#include <algorithm>
#include <array>

namespace
{

using namespace DataObjects;
using namespace TestSupport;

const QString notImplemented = "Conversion from this buffer frame type to a DataObject not implemented yet.";

/// Four by four words 7, with a text as `RGBFrame`; without one when it is null.
BufferPointer wordBuffer(const QString& mark = {})
{
    auto* const frame = BufferApi::CreateImageFrame(BufferApi::DT_WORD, 4, 4, 1);
    auto* const pixels = static_cast<unsigned short*>(pixelsOf(*frame, 0));
    std::fill(pixels, pixels + 16, static_cast<unsigned short>(7));
    auto buffer = bufferOf(frame);
    if (!mark.isNull()) {
        setText(*frame, Attr::rgbFrame, mark);
    }
    return buffer;
}

BufferPointer colourBuffer()
{
    auto* const frame = BufferApi::CreateImageFrame(BufferApi::DT_RGB, 4, 4, 1);
    std::fill_n(static_cast<BufferApi::RgbQuad*>(pixelsOf(*frame, 0)), 16, BufferApi::RgbQuad{});
    return bufferOf(frame);
}

BufferPointer vectorBuffer()
{
    auto* const frame = BufferApi::CreateVectorFrame3C(6, 5, 2, 1);
    frame->SetGridX(16);
    frame->SetGridY(8);
    frame->SetGridZ(4);
    return bufferOf(frame);
}

TEST(DataObjectFromBuffer, TheFirstFrameDecidesTheKindAndAMarkForWhoeverWantsColour)
{
    const QString image = "ImageBufferVariant";
    const QString colour = "RGBImageBuffer";
    EXPECT_EQ(GetDataObjectFromBuffer(colourBuffer())->getTypeIdentifier(), colour);
    EXPECT_EQ(GetDataObjectAsRGBFromBuffer(colourBuffer())->getTypeIdentifier(), colour);
    EXPECT_EQ(GetDataObjectFromBuffer(wordBuffer())->getTypeIdentifier(), image);
    EXPECT_EQ(GetDataObjectFromBuffer(wordBuffer("1"))->getTypeIdentifier(), image)
        << "a mark alone is no wish for colour";
    for (const char* const mark : {"1", "257", "769"}) {
        EXPECT_EQ(GetDataObjectAsRGBFromBuffer(wordBuffer(mark))->getTypeIdentifier(), colour) << mark;
    }
    for (const QString& mark : {QString(), QStringLiteral(""), QStringLiteral("0")}) {
        EXPECT_EQ(GetDataObjectAsRGBFromBuffer(wordBuffer(mark))->getTypeIdentifier(), image)
            << mark.toStdString();
    }
    // A wish that cannot be met is no image either.
    for (const char* const mark : {"0.0", "abc", " 0", "-1"}) {
        const auto get = [&] { return GetDataObjectAsRGBFromBuffer(wordBuffer(mark)); };
        EXPECT_TRUE(raises("Invalid RGB frame", get)) << mark;
    }
    auto bytes = bufferOf(BufferApi::CreateImageFrame(BufferApi::DT_BYTE, 4, 4, 1));
    setText(*bytes->GetFrame(0), Attr::rgbFrame, QStringLiteral("1"));
    EXPECT_TRUE(
        raises("Invalid RGB image type", [&] { return GetDataObjectAsRGBFromBuffer(std::move(bytes)); }));
}

TEST(DataObjectFromBuffer, AllElseIsNotImplemented)
{
    const std::array<std::function<BufferPointer()>, 3> makers = {
        [] { return BufferPointer(); }, [] { return bufferOf(); }, [] { return vectorBuffer(); }};
    for (const auto& make : makers) {
        expectRaised<RTE::Exception>(
            {{notImplemented, [&] { return GetDataObjectFromBuffer(make()); }},
             {notImplemented, [&] { return GetDataObjectAsRGBFromBuffer(make()); }}});
    }
    auto late = wordBuffer();
    late->AddFrame(BufferApi::CreateVectorFrame2C(2, 2, 1, 1));
    EXPECT_TRUE(raises("Frame of buffer is not from type image!",
                       [&] { return GetDataObjectFromBuffer(std::move(late)); }));
}

TEST(DataObjectFromBuffer, ObjectsOwnAllTheyNeed)
{
    auto buffer = imageBuffer(BufferApi::DT_INT32, 2, 2);
    const void* const pixels = pixelsOf(*buffer->GetFrame(1), 1);
    const auto object = GetDataObjectFromBuffer(std::move(buffer));
    auto& recording = dynamic_cast<ImageBuffer<int>&>(*object);
    EXPECT_EQ(recording.getFrame(1).getPlane(1).GetRawPointer(), pixels) << "moved, not copied";
    EXPECT_TRUE(recording.HasOwnerShip());
    EXPECT_TRUE(buffersEqual(*createBufferFromVariant(*object), *imageBuffer(BufferApi::DT_INT32, 2, 2)));
    // Each of these would write to a frame that is gone.
    recording.GetGlobalAttributes().set("New", 1);
    recording.getFrame(0).GetAttributes().set("New", 1);
    recording.getFrame(0).GetScaleX().setFactor(2.0);
    recording.AddScalarField("New", recording.getFrame(0).GetScaleI());
    EXPECT_EQ(recording.getFrame(0).getPlane(1).GetScalarFields().size(), 3U);

    const auto colour = GetDataObjectFromBuffer(colourBuffer());
    auto& images = dynamic_cast<RGBImageBuffer&>(*colour);
    images.GetGlobalAttributes().set("New", 1);
    images.getFrame(0).GetAttributes().set("New", 1);
    EXPECT_EQ(images.getFrame(0)(3, 3), Rgb16(0, 0, 0));
}

/// Says that it is of some kind.
class OtherVariant : public Variant
{
public:
    explicit OtherVariant(const QString& identifier) : m_identifier(identifier) {}
    [[nodiscard]] QString getTypeIdentifier() const override { return m_identifier; }
    [[nodiscard]] GlobalAndFrameAttributes getAllAttributes() const override { return {}; }
    [[nodiscard]] std::unique_ptr<Variant> createCopy() const override
    {
        return std::make_unique<OtherVariant>(m_identifier);
    }

private:
    QString m_identifier;
};

TEST(DataObjectFromBuffer, BuffersAreMadeOfImagesAndColours)
{
    const Image<float> image(3, 2, 1.5F, true);
    const auto ofImages = createBufferFromVariant(ImageBuffer<float>(image, AttributesContainer()));
    EXPECT_EQ(ofImages->GetFrame(0)->GetDataType(), BufferApi::DT_FLOAT);
    EXPECT_TRUE(ofImages->GetFrame(0)->HasMask());
    auto ofColours = createBufferFromVariant(RGBImageBuffer(4, 4, 2, Rgb16(10, 20, 30), true));
    EXPECT_EQ(ofColours->GetFrameCount(), 2U);
    EXPECT_EQ(ofColours->GetFrame(0)->GetDataType(), BufferApi::DT_WORD);
    EXPECT_EQ(GetDataObjectAsRGBFromBuffer(std::move(ofColours))->getTypeIdentifier(), "RGBImageBuffer");
    for (const QString& identifier :
         {TypeIdentifier::scatterPlot, TypeIdentifier::invalid, QString(), QStringLiteral("Other"),
          TypeIdentifier::imageBuffer, TypeIdentifier::rgbImageBuffer}) {
        EXPECT_EQ(createBufferFromVariant(OtherVariant(identifier)), nullptr);
    }
}

TEST(BufferStructureInformation, TellsTheFirstFrame)
{
    using Numbers = std::vector<unsigned int>;
    using Flags = std::vector<bool>;
    const auto numbers = [](const auto& of) {
        return Numbers{of.frameCount, of.width, of.height, of.depth, of.gridX, of.gridY, of.gridZ};
    };
    const auto flags = [](const auto& of) {
        return Flags{of.isImage, of.isVector, of.isVector3C, of.hasMask};
    };
    auto images = imageBuffer(BufferApi::DT_INT32, 3, 2);
    images->AddFrame(BufferApi::CreateVectorFrame2C(2, 2, 1, 1));
    const auto ofImages = GetBufferStructureInformationForBuffer(*images);
    EXPECT_EQ(numbers(ofImages), (Numbers{3, 31, 17, 3, 0, 0, 1}));
    EXPECT_EQ(flags(ofImages), (Flags{true, false, false, true}));
    EXPECT_EQ(ofImages.dataType, BufferApi::DT_INT32);
    EXPECT_EQ(ofImages.name, "Recording");

    const auto ofColours = GetBufferStructureInformationForBuffer(*colourBuffer());
    EXPECT_EQ(flags(ofColours), (Flags{true, false, false, false}));
    EXPECT_EQ(ofColours.dataType, BufferApi::DT_RGB);

    const auto ofVectors = GetBufferStructureInformationForBuffer(*vectorBuffer());
    EXPECT_EQ(numbers(ofVectors), (Numbers{1, 6, 5, 2, 16, 8, 4}));
    EXPECT_EQ(flags(ofVectors), (Flags{false, true, true, false}));
    EXPECT_EQ(ofVectors.dataType, BufferApi::DT_FLOAT);
    const auto two = bufferOf(BufferApi::CreateVectorFrame2C(2, 2, 1, 1));
    EXPECT_FALSE(GetBufferStructureInformationForBuffer(*two).isVector3C);

    const auto ofNone = GetBufferStructureInformationForBuffer(*bufferOf());
    EXPECT_EQ(ofNone.frameCount + ofNone.width + ofNone.depth + ofNone.gridX, 0U);
    EXPECT_EQ(ofNone.dataType, BufferApi::DT_UNKNOWN);
    EXPECT_FALSE(ofNone.isImage || ofNone.isVector);
}

TEST(SetTypeId, NamesAreThoseInFiles)
{
    EXPECT_EQ(SetTypeId::recording, "SET_TYPE_ID_RECORDING");
    EXPECT_EQ(SetTypeId::plot, "SET_TYPE_ID_PLOT");
    EXPECT_EQ(SetTypeId::flameFront, "SET_TYPE_ID_FLAMEFRONT");
    EXPECT_EQ(SetTypeId::nullSet, "NullSet");
}

} // namespace
