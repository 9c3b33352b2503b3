// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageMoveToBuffer.h"

#include "Core/DataObjects/ImageFromBuffer.h"
#include "Core/DataObjects/LazyMask.h"
#include "Tests/DataObjects/StrangeImage.h"
#include "Tests/Support/AllTypes.h"
#include "Tests/Support/Allocations.h"
#include "Tests/Support/Frames.h"
#include "Tests/Support/ImageFrames.h"
#include "Tests/Support/Raises.h"

#include <functional>
#include <memory>
#include <utility>

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using BufferApi::I_Buffer;
using BufferApi::I_Frame;
using BufferApi::I_FrameImage;

using FramePointer = std::unique_ptr<I_FrameImage>;

/// The frame of a buffer that held one.
const I_FrameImage& onlyFrame(const I_Buffer& buffer)
{
    EXPECT_EQ(buffer.GetFrameCount(), 1U);
    return imageFrameOf(buffer, 0);
}

TEST(ImageMoveToBuffer, TheFrameTakesTheArraysThatTheImageOwns)
{
    forAllTypes([](auto tag) {
        using T = typename decltype(tag)::type;
        const auto expected = imageFrame(BufferApi::GetDataType<T>(), 1);
        const auto takenFrom = [&](auto write) {
            auto source = imageFrame(BufferApi::GetDataType<T>(), 1);
            std::vector<const void*> memory;
            for (const std::string& component :
                 {I_FrameImage::COMPONENT_PIXEL, I_Frame::COMPONENT_MASK, peakRatio, fieldHeight}) {
                memory.push_back(memoryOf(*source, component, 0));
            }
            Image<T> image = GetImageT<T>(std::move(*source), 0, true);
            source.reset();
            const auto owner = write(image);
            const I_FrameImage* frame = nullptr;
            if constexpr (std::is_same_v<decltype(owner), const FramePointer>) {
                frame = owner.get();
            } else {
                frame = &onlyFrame(*owner);
            }
            EXPECT_TRUE(framesEqual(*frame, *expected));
            EXPECT_EQ(pixelsOf(*frame, 0), memory[0]);
            EXPECT_EQ(memoryOf(*frame, I_Frame::COMPONENT_MASK, 0), memory[1]);
            EXPECT_EQ(memoryOf(*frame, peakRatio, 0), memory[2]);
            EXPECT_EQ(memoryOf(*frame, fieldHeight, 0), memory[3]);
        };
        takenFrom([](Image<T>& i) { return FramePointer(CreateFrameFromImageT(std::move(i), true)); });
        takenFrom([](ImageVariant& i) { return FramePointer(CreateFrameFromImage(std::move(i), true)); });
        takenFrom([](ImageVariant& i) { return CreateBufferFromImage(std::move(i), true); });
    });
}

TEST(ImageMoveToBuffer, PixelsAloneGetDefaultScales)
{
    forAllTypes([](auto tag) {
        using T = typename decltype(tag)::type;
        const FramePointer expected(BufferApi::CreateImageFrame(BufferApi::GetDataType<T>(), 3, 2, 1));
        std::fill_n(static_cast<T*>(pixelsOf(*expected, 0)), 6, T(7));
        const auto check = [&](auto write) {
            ImageData<T> data(3, 2, 7);
            const T* const pixels = data.begin();
            const FramePointer frame = write(data);
            EXPECT_TRUE(framesEqual(*frame, *expected));
            EXPECT_EQ(pixelsOf(*frame, 0), pixels);
        };
        check([](ImageData<T>& d) { return FramePointer(CreateFrameFromImageDataT(std::move(d))); });
        check([](ImageDataVariant& d) { return FramePointer(CreateFrameFromImageData(std::move(d))); });
        ImageData<T> data(3, 2, 7);
        const T* const pixels = data.begin();
        EXPECT_EQ(pixelsOf(onlyFrame(*CreateBufferFromImageData(std::move(data))), 0), pixels);
    });
}

TEST(ImageMoveToBuffer, AViewIsCopiedAndItsFrameStays)
{
    const auto source = imageFrame(BufferApi::DT_DOUBLE, 1);
    const auto expected = imageFrame(BufferApi::DT_DOUBLE, 1);
    const FramePointer frame(CreateFrameFromImageT(GetImageT<double>(*source, 0, true), true));
    EXPECT_TRUE(framesEqual(*frame, *expected));
    EXPECT_TRUE(framesEqual(*source, *expected));
    EXPECT_NE(pixelsOf(*frame, 0), pixelsOf(*source, 0));
}

TEST(ImageMoveToBuffer, WhatIsNotOwnedIsCopied)
{
    bool maskPixels[] = {true, false, true, true};
    Image<int> image(ImageData<int>(2, 2, 7), Mask(maskPixels, 2, 2, false));
    const int* const pixels = image.begin();
    const FramePointer frame(CreateFrameFromImageT(std::move(image), true));
    EXPECT_EQ(pixelsOf(*frame, 0), pixels);
    EXPECT_EQ(std::memcmp(memoryOf(*frame, I_Frame::COMPONENT_MASK, 0), maskPixels, 4), 0);

    Image<int> inBlock(std::make_unique<RTE::OwnedMemory>(16), std::make_unique<LazyMask>(2, 2, true), 2, 2);
    inBlock = 5;
    const FramePointer copy(CreateFrameFromImageT(std::move(inBlock), true));
    EXPECT_FALSE(inBlock.IsMaskSpawned());
    EXPECT_EQ(GetImageT<int>(*copy, 0)(1, 1), 5);
    EXPECT_TRUE(AllValuesValid(GetImageT<int>(*copy, 0)));
}

TEST(ImageMoveToBuffer, WithoutAMaskNoneIsMade)
{
    Image<int> image(2, 2, 7, false);
    EXPECT_FALSE(FramePointer(CreateFrameFromImageT(std::move(image), false))->HasMask());
}

TEST(ImageMoveToBuffer, NothingIsAllocatedForPixels)
{
    Image<float> image(512, 512, 1.0F, true);
    image.GetScalarFields().Add("Field", 1.0F);
    forgetLargestAllocation();
    const auto buffer = CreateBufferFromImage(std::move(image), true);
    EXPECT_LT(largestAllocation(), 16U * 1024);
}

TEST(ImageMoveToBuffer, AMaskOfAnotherSizeIsRefusedAndNothingLeaks)
{
    Image<int> image(2, 2, 7, true);
    image.GetMask() = Mask(1, 1, true);
    EXPECT_TRUE(raises("Source and destination have different sizes.",
                       [&] { return CreateFrameFromImageT(std::move(image), true); }));
}

TEST(ImageMoveToBuffer, PixelsThatWereGivenUpAreNotRead)
{
    Image<int> image(2, 2, 7, true);
    FramePointer(CreateFrameFromImageT(std::move(image), true)).reset();
    EXPECT_TRUE(
        raises("data-pointer is null", [&] { return CreateFrameFromImageT(std::move(image), true); }));
}

TEST(ImageMoveToBuffer, TypesOutsideTheSixAreRefused)
{
    EXPECT_TRUE(raises<RTE::Exception>("Unsupported image type",
                                       [] { return CreateFrameFromImage(StrangeImage(), true); }));
    EXPECT_TRUE(raises<RTE::Exception>("Unsupported image data type",
                                       [] { return CreateBufferFromImageData(StrangeImageData()); }));
}

} // namespace
