// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageVolumeToFrame.h"

#include "Core/DataObjects/BufferAttributes.h"
#include "Core/DataObjects/ImageVolumeFromFrame.h"
#include "Tests/DataObjects/PlaneMemory.h"
#include "Tests/DataObjects/StrangeImage.h"
#include "Tests/Support/AllTypes.h"
#include "Tests/Support/Frames.h"
#include "Tests/Support/ImageFrames.h"
#include "Tests/Support/Raises.h"

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using BufferApi::I_Frame;
using BufferApi::I_FrameImage;

using FramePointer = std::unique_ptr<I_FrameImage>;

TEST(ImageVolumeToFrame, AFrameHoldsAllThatTheVolumeHolds)
{
    forAllTypes([]<typename T>(PixelTypes::Tag<T>) {
        const auto source = imageFrame(BufferApi::GetDataType<T>(), 3);
        const ImageVolume<T> view = GetImageVolumeT<T>(std::as_const(*source));
        const ImageVolume<T> volume(view);
        const ImageVolumeVariant& variant = volume;
        EXPECT_TRUE(framesEqual(*FramePointer(CreateFrameFromImageVolumeT(view, true)), *source));
        EXPECT_TRUE(framesEqual(*FramePointer(CreateFrameFromImageVolume(variant, true)), *source));
        EXPECT_TRUE(framesEqual(imageFrameOf(*CreateBufferFromImageVolume(variant, true), 0), *source));

        const auto target = imageFrame(BufferApi::GetDataType<T>(), 3, 2);
        CopyImageVolumeToFrame(variant, *target);
        EXPECT_TRUE(framesEqual(*target, *source));
        CopyImageVolumeToFrameT(view, *source);
        EXPECT_TRUE(framesEqual(*target, *source));

        removeMask(*source);
        EXPECT_TRUE(framesEqual(*FramePointer(CreateFrameFromImageVolumeT(volume, false)), *source));
    });
}

TEST(ImageVolumeToFrame, TheFrameTakesTheArraysThatAllPlanesOwn)
{
    forAllTypes([]<typename T>(PixelTypes::Tag<T>) {
        const auto expected = imageFrame(BufferApi::GetDataType<T>(), 3);
        const auto check = [&](auto write) {
            auto source = imageFrame(BufferApi::GetDataType<T>(), 3);
            const Memory memory = memoryOfPlane(*source, 2);
            ImageVolume<T> volume = GetImageVolumeT<T>(std::move(*source), true);
            source.reset();
            const auto written = write(volume);
            EXPECT_TRUE(framesEqual(onlyFrame(written), *expected));
            EXPECT_EQ(memoryOfPlane(onlyFrame(written), 2), memory);
        };
        check([](ImageVolume<T>& v) { return owned(CreateFrameFromImageVolumeT(std::move(v), true)); });
        check([](ImageVolumeVariant& v) { return owned(CreateFrameFromImageVolume(std::move(v), true)); });
        check([](ImageVolume<T>& v) { return CreateBufferFromImageVolume(std::move(v), true); });
    });
}

TEST(ImageVolumeToFrame, OnePlaneThatIsNotOwnedMakesAllBeCopied)
{
    int foreign[] = {1, 2, 3, 4};
    bool foreignMask[] = {true, false, true, true};
    ImageVolume<int> volume(Math::Size3T<unsigned int>(2, 2, 3), 7, true);
    volume[1] = std::make_shared<Image<int>>(foreign, foreignMask, 2, 2);
    const int* const owned = volume[2]->begin();
    const FramePointer frame(CreateFrameFromImageVolumeT(std::move(volume), true));
    EXPECT_EQ(volume[2]->begin(), owned);
    EXPECT_NE(pixelsOf(*frame, 2), owned);
    EXPECT_EQ(volume[2]->GetPixel(1, 1), 7);
    EXPECT_TRUE(volume[2]->IsMaskValid(1, 1));
    const ImageVolume<int> copy = GetImageVolumeT<int>(std::as_const(*frame));
    EXPECT_EQ(copy.GetVoxel(1, 1, 1), 4);
    EXPECT_EQ(copy.GetVoxel(1, 1, 2), 7);
    EXPECT_FALSE(copy.IsMaskValid(1, 0, 1));
}

TEST(ImageVolumeToFrame, APlaneThatServesTwoDepthsIsCopied)
{
    ImageVolume<int> volume(Math::Size3T<unsigned int>(2, 2, 2), 7, true);
    volume[1] = volume[0];
    const auto frame = owned(CreateFrameFromImageVolumeT(std::move(volume), false));
    EXPECT_EQ(GetImageVolumeT<int>(std::as_const(*frame)).GetVoxel(1, 1, 1), 7);
    EXPECT_FALSE(frame->HasMask()) << "none was wanted";
}

TEST(ImageVolumeToFrame, APlaneOfAnotherSizeIsRefusedAndNothingLeaks)
{
    ImageVolume<int> volume(Math::Size3T<unsigned int>(2, 2, 2), 7, true);
    volume[1] = std::make_shared<Image<int>>(1, 1, 7, true);
    EXPECT_TRUE(raises("Source and destination have different sizes.",
                       [&] { return CreateFrameFromImageVolumeT(std::move(volume), true); }));
    EXPECT_EQ(volume[0]->GetPixel(1, 1), 7);
}

TEST(ImageVolumeToFrame, CopyingMergesAttributesAndAddsNoMask)
{
    const auto source = imageFrame(BufferApi::DT_WORD, 2);
    const auto target = imageFrame(BufferApi::DT_WORD, 2, 2);
    removeMask(*target);
    BufferAttributes(*target).set("Only here", QStringLiteral("stays"));
    CopyImageVolumeToFrame(*GetImageVolume(*source, true), *target);
    EXPECT_FALSE(target->HasMask());
    EXPECT_EQ(BufferAttributes(*target).attributeValue("Only here").value<QString>(), "stays");
    EXPECT_EQ(BufferAttributes(*target).attributeValue("Operator").value<QString>(),
              BufferAttributes(*source).attributeValue("Operator").value<QString>());
}

TEST(ImageVolumeToFrame, CopyingChecksInOrderAndBeforeAnythingChanges)
{
    const ImageVolume<int> volume(Math::Size3T<unsigned int>(4, 4, 2), 7, true);
    const auto refuses = [&](const QString& text, const std::unique_ptr<I_FrameImage>& frame) {
        frame->SetScaleX({9.0, 9.0, "m", "x"});
        EXPECT_TRUE(raises(text, [&] { CopyImageVolumeToFrame(volume, *frame); }));
        EXPECT_EQ(frame->GetScaleX().getFactor(), 9.0);
    };
    const QString other = "Image volume field and image frame have different ";
    refuses("Z-Plane for given frame not valid!", newFrame(BufferApi::DT_FLOAT, 5, 5, 0));
    refuses("Pixel-plane of given frame has not the required type!", newFrame(BufferApi::DT_FLOAT, 5, 5, 3));
    refuses(other + "width", newFrame(BufferApi::DT_INT32, 5, 5, 3));
    refuses(other + "height", newFrame(BufferApi::DT_INT32, 4, 5, 3));
    refuses(other + "depth", newFrame(BufferApi::DT_INT32, 4, 4, 3));
}

TEST(ImageVolumeToFrame, TypesOutsideTheSixAreRefused)
{
    const auto frame = newFrame(BufferApi::DT_FLOAT, 2, 2);
    const StrangeVolume volume;
    const QString text = "Unsupported image type";
    expectRaised<RTE::Exception>({{text, [&] { CopyImageVolumeToFrame(volume, *frame); }},
                                  {text, [&] { return CreateFrameFromImageVolume(volume, true); }},
                                  {text, [] { return CreateBufferFromImageVolume(StrangeVolume(), true); }}});
}

} // namespace
