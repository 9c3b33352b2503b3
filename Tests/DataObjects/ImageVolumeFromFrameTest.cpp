// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageVolumeFromFrame.h"

#include "Core/DataObjects/BufferAttributes.h"
#include "Tests/DataObjects/PlaneMemory.h"
#include "Tests/Support/AllTypes.h"
#include "Tests/Support/Allocations.h"
#include "Tests/Support/ImageFrames.h"
#include "Tests/Support/Raises.h"

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using BufferApi::I_Buffer;
using BufferApi::I_Frame;
using BufferApi::I_FrameImage;

using Memories = std::vector<Memory>;

Memories memoryOfPlanes(const I_FrameImage& frame)
{
    Memories memories;
    for (unsigned int z = 0; z < frame.GetDepth(); ++z) {
        memories.push_back(memoryOfPlane(frame, z));
    }
    return memories;
}

template <typename T>
Memories memoryOfPlanes(const ImageVolumeVariant& volume)
{
    EXPECT_EQ(volume.GetDataType(), E_DataType(PixelTypes::number<T>));
    Memories memories;
    for (const auto& plane : dynamic_cast<const ImageVolume<T>&>(volume)) {
        memories.push_back(memoryOfPlane(*plane));
    }
    return memories;
}

using Read = std::function<std::unique_ptr<ImageVolumeVariant>(I_Buffer&)>;

template <typename T>
std::unique_ptr<ImageVolumeVariant> held(ImageVolume<T>&& volume)
{
    return std::make_unique<ImageVolume<T>>(std::move(volume));
}

TEST(ImageVolumeFromFrame, AViewIsBoundToAllPlanes)
{
    forAllTypes([]<typename T>(PixelTypes::Tag<T>) {
        for (const Read& read :
             {Read([](I_Buffer& b) { return held(GetImageVolumeT<T>(imageFrameOf(b, 1), true)); }),
              Read([](I_Buffer& b) { return held(GetImageVolumeT<T>(b, 1, true)); }),
              Read([](I_Buffer& b) { return GetImageVolume(imageFrameOf(b, 1), true); }),
              Read([](I_Buffer& b) { return GetImageVolume(b, 1, true); })}) {
            const auto buffer = imageBuffer(BufferApi::GetDataType<T>(), 3, 2);
            I_FrameImage& frame = imageFrameOf(*buffer, 1);
            const auto volume = read(*buffer);
            ASSERT_EQ(volume->GetDepth(), 3U);
            EXPECT_EQ(memoryOfPlanes<T>(*volume), memoryOfPlanes(frame));
            volume->getPlane(2).SetScaleZ({3.0, 4.0, "s", "other"});
            EXPECT_EQ(frame.GetScaleZ(), Zt::LinearScale(3.0, 4.0, "s", "other"));
            EXPECT_EQ(volume->GetScaleZ(), frame.GetScaleZ());
            volume->getPlane(1).GetAttributes().set("Operator", QStringLiteral("changed"));
            EXPECT_EQ(BufferAttributes(frame).attributeValue("Operator").value<QString>(), "changed");
        }
    });
}

TEST(ImageVolumeFromFrame, ConstFormsViewToo)
{
    const auto buffer = imageBuffer(BufferApi::DT_FLOAT, 2, 2);
    const I_Buffer& constBuffer = *buffer;
    const I_FrameImage& frame = imageFrameOf(constBuffer, 1);
    const Memories expected = memoryOfPlanes(frame);
    EXPECT_EQ(memoryOfPlanes<float>(GetImageVolumeT<float>(frame)), expected);
    EXPECT_EQ(memoryOfPlanes<float>(GetImageVolumeT<float>(constBuffer, 1)), expected);
    EXPECT_EQ(memoryOfPlanes<float>(*GetImageVolume(frame)), expected);
    EXPECT_EQ(memoryOfPlanes<float>(*GetImageVolume(constBuffer, 1)), expected);
}

TEST(ImageVolumeFromFrame, AVolumeTakenOutOfAFrameStandsByItself)
{
    forAllTypes([]<typename T>(PixelTypes::Tag<T>) {
        for (const Read& read :
             {Read([](I_Buffer& b) { return held(GetImageVolumeT<T>(std::move(imageFrameOf(b, 1)), true)); }),
              Read([](I_Buffer& b) { return held(GetImageVolumeT<T>(std::move(b), 1, true)); }),
              Read([](I_Buffer& b) { return GetImageVolume(std::move(imageFrameOf(b, 1)), true); }),
              Read([](I_Buffer& b) { return GetImageVolume(std::move(b), 1, true); })}) {
            auto buffer = imageBuffer(BufferApi::GetDataType<T>(), 3, 2);
            const Memories memory = memoryOfPlanes(imageFrameOf(*buffer, 1));
            const auto volume = read(*buffer);
            EXPECT_EQ(memoryOfPlanes(imageFrameOf(*buffer, 1)), Memories(3, noMemory));
            buffer.reset();
            EXPECT_EQ(memoryOfPlanes<T>(*volume), memory);
            EXPECT_TRUE(dynamic_cast<ImageVolume<T>&>(*volume).HasOwnerShip());
            volume->getPlane(2).SetScaleX({3.0, 4.0, "s", "other"});
            EXPECT_EQ(volume->GetScaleX(), Zt::LinearScale(3.0, 4.0, "s", "other"));
            EXPECT_EQ(volume->getPlane(1).GetAttributes().attributeValue("Acq.Gain").template value<double>(),
                      2.5);
        }
    });
}

TEST(ImageVolumeFromFrame, NoFormAllocatesPixels)
{
    const auto frame = newFrame(BufferApi::DT_WORD, 512, 512, 3);
    frame->AddMask({});
    forgetLargestAllocation();
    static_cast<void>(GetImageVolume(*frame, true));
    const auto volume = GetImageVolume(std::move(*frame), true);
    EXPECT_LT(largestAllocation(), 16U * 1024);
}

TEST(ImageVolumeFromFrame, FailuresAreTold)
{
    const auto buffer = bufferOf(BufferApi::CreateImageFrame(BufferApi::DT_WORD, 4, 4, 3),
                                 BufferApi::CreateVectorFrame2C(4, 4, 1, 1),
                                 BufferApi::CreateImageFrame(BufferApi::DT_WORD, 4, 4, 0));
    I_Buffer& b = *buffer;
    const QString noMask = "Frame requires a mask, but has no mask.";
    const QString notImage = "Frame type of buffer is not image";
    expectRaised(
        {{"Frame index out of bounds", [&] { return GetImageVolumeT<int>(b, 3, true); }},
         {"Frame index out of bounds", [&] { return GetImageVolume(std::as_const(b), 3); }},
         {notImage, [&] { return GetImageVolumeT<float>(std::as_const(b), 1); }},
         {notImage, [&] { return GetImageVolume(std::move(b), 1, true); }},
         {noMask, [&] { return GetImageVolumeT<int>(b, 0, true); }},
         {noMask, [&] { return GetImageVolume(std::move(b), 0, true); }},
         {"Pixel-plane of given frame has not the required type",
          [&] { return GetImageVolumeT<int>(b, 0, false); }},
         {"ImageVolume must have at least one z-plane", [&] { return GetImageVolume(b, 2, false); }}});
    EXPECT_NE(pixelsOf(*buffer->GetFrame(0), 0), nullptr);

    const auto colour = imageFrame(BufferApi::DT_RGB, 2);
    const auto hollow = imageFrame(BufferApi::DT_RGB, 2);
    hollow->RemoveComponent(0);
    expectRaised<RTE::Exception>(
        {{"RGB image is not supported.", [&] { return GetImageVolume(*colour, false); }},
         {"Image has unsupported data type", [&] { return GetImageVolume(*hollow, false); }}});
}

} // namespace
