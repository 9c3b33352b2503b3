// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageBufferFromBuffer.h"

#include "Core/DataObjects/AttributesContainer.h"
#include "Core/DataObjects/BufferAttributes.h"
#include "Tests/Support/AllTypes.h"
#include "Tests/Support/Frames.h"
#include "Tests/Support/ImageFrames.h"
#include "Tests/Support/Raises.h"

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using BufferApi::I_Buffer;

QString projectOf(I_Buffer& buffer)
{
    return BufferAttributes(buffer).attributeValue("Project").value<QString>();
}

void expectViewOf(I_Buffer& buffer, ImageBufferVariant& view)
{
    ASSERT_EQ(view.getFrameCount(), 2U);
    EXPECT_EQ(view.getFrame(1).GetDepth(), 3U);
    view.getFrame(1).SetScaleX({3.0, 4.0, "s", "other"});
    EXPECT_EQ(buffer.GetFrame(1)->GetScaleX(), view.getFrame(1).GetScaleX());
    view.GetGlobalAttributes().set("Project", QStringLiteral("changed"));
    EXPECT_EQ(projectOf(buffer), "changed");
}

TEST(ImageBufferFromBuffer, AViewIsBoundToTheBuffer)
{
    forAllTypes([]<typename T>(PixelTypes::Tag<T>) {
        auto buffer = imageBuffer(BufferApi::GetDataType<T>(), 3, 2);
        auto view = GetImageBufferT<T>(*buffer, true);
        EXPECT_EQ(view.GetName(), "Recording");
        EXPECT_EQ(view.getFrame(1).getPlane(2).begin(), pixelsOf(*buffer->GetFrame(1), 2));
        expectViewOf(*buffer, view);
        buffer = imageBuffer(BufferApi::GetDataType<T>(), 3, 2);
        expectViewOf(*buffer, *GetImageBuffer(*buffer, true));

        const auto expectConstView = [&](const ImageBuffer<T>& constView) {
            EXPECT_EQ(constView.getFrame(0).getPlane(1).begin(), pixelsOf(*buffer->GetFrame(0), 1));
            EXPECT_EQ(constView.GetGlobalAttributes().attributeValue("Project").template value<QString>(),
                      "changed");
        };
        expectConstView(GetImageBufferT<T>(std::as_const(*buffer)));
        expectConstView(dynamic_cast<const ImageBuffer<T>&>(*GetImageBuffer(std::as_const(*buffer))));
    });
}

TEST(ImageBufferFromBuffer, ARecordingTakenOutStandsByItselfAndGoesBackByMoving)
{
    forAllTypes([]<typename T>(PixelTypes::Tag<T>) {
        const auto expected = imageBuffer(BufferApi::GetDataType<T>(), 3, 2);
        auto source = imageBuffer(BufferApi::GetDataType<T>(), 3, 2);
        const void* const pixels = pixelsOf(*source->GetFrame(1), 2);
        auto recording = GetImageBufferT<T>(std::move(*source), true);
        recording.GetGlobalAttributes().set("Project", QStringLiteral("changed"));
        EXPECT_EQ(projectOf(*source), "Jet");
        recording.GetGlobalAttributes().set("Project", QStringLiteral("Jet"));
        source.reset();
        EXPECT_EQ(recording.getFrame(1).getPlane(2).begin(), pixels);
        EXPECT_TRUE(buffersEqual(*CreateBufferFromImageBuffer(std::as_const(recording), true), *expected));
        EXPECT_EQ(recording.getFrame(1).getPlane(2).begin(), pixels);
        const auto moved = CreateBufferFromImageBuffer(std::move(recording), true);
        EXPECT_TRUE(buffersEqual(*moved, *expected));
        EXPECT_EQ(pixelsOf(*moved->GetFrame(1), 2), pixels);
        EXPECT_TRUE(buffersEqual(*CreateBufferFromImageBuffer(*GetImageBuffer(std::move(*moved), true), true),
                                 *expected));
    });
}

TEST(ImageBufferFromBuffer, FramesThatSharePlanesAreMovedLast)
{
    const auto expected = imageBuffer(BufferApi::DT_WORD, 2, 1);
    auto source = imageBuffer(BufferApi::DT_WORD, 2, 1);
    const void* const pixels = pixelsOf(*source->GetFrame(0), 1);
    auto taken = GetImageBufferT<unsigned short>(std::move(*source), true);
    const auto volume = std::make_shared<ImageVolume<unsigned short>>(std::move(taken.getFrame(0)));
    ImageBuffer<unsigned short> recording({volume, volume}, std::make_unique<AttributesContainer>());
    const auto moved = CreateBufferFromImageBuffer(std::move(recording), true);
    EXPECT_TRUE(framesEqual(*moved->GetFrame(0), *expected->GetFrame(0)));
    EXPECT_TRUE(framesEqual(*moved->GetFrame(1), *expected->GetFrame(0)));
    EXPECT_EQ(pixelsOf(*moved->GetFrame(1), 1), pixels);
}

TEST(ImageBufferFromBuffer, FailuresAreTold)
{
    const auto withVectors = imageBuffer(BufferApi::DT_WORD, 1, 1);
    withVectors->AddFrame(BufferApi::CreateVectorFrame2C(4, 4, 1, 1));
    const auto noFrames = bufferOf();
    const auto colour = imageBuffer(BufferApi::DT_RGB, 1, 1);
    const auto hollow = imageBuffer(BufferApi::DT_RGB, 1, 1);
    hollow->GetFrame(0)->RemoveComponent(0);
    const QString notImage = "Frame of buffer is not from type image!";
    expectRaised({{notImage, [&] { return GetImageBuffer(*withVectors, false); }},
                  {notImage, [&] { return GetImageBufferT<unsigned short>(std::as_const(*withVectors)); }},
                  {"Pixel-plane of given frame has not the required type",
                   [&] { return GetImageBufferT<float>(*withVectors, false); }},
                  {"Image volume list is empty", [&] { return GetImageBufferT<int>(*noFrames, false); }}});
    expectRaised<RTE::Exception>(
        {{"Given buffer has no frames", [&] { return GetImageBuffer(std::as_const(*noFrames)); }},
         {"RGB ImageBuffer is not supported.", [&] { return GetImageBuffer(std::move(*colour), false); }},
         {"Image volume list has unsupported data type", [&] { return GetImageBuffer(*hollow, false); }}});
    EXPECT_EQ(CreateBufferFromImageBuffer(*ImageBuffer<int>::CreateEmptyImageBuffer(), true)->GetFrameCount(),
              0U);
}

} // namespace
