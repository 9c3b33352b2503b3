// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageMoveToBuffer.h"

#include "Core/DataObjects/ImageFromBuffer.h"
#include "Core/DataObjects/ImageToBuffer.h"
#include "Core/DataObjects/LazyMask.h"
#include "Tests/DataObjects/PlaneMemory.h"
#include "Tests/Support/AllTypes.h"
#include "Tests/Support/Allocations.h"
#include "Tests/Support/Frames.h"
#include "Tests/Support/ImageFrames.h"

#include <cstring>

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using BufferApi::I_Frame;
using BufferApi::I_FrameImage;

TEST(ImageMoveToBuffer, TheFrameTakesTheArraysThatTheImageOwns)
{
    forAllTypes([]<typename T>(PixelTypes::Tag<T>) {
        const auto expected = imageFrame(BufferApi::GetDataType<T>(), 1);
        const auto check = [&](auto write) {
            auto source = imageFrame(BufferApi::GetDataType<T>(), 1);
            const Memory memory = memoryOfPlane(*source, 0);
            Image<T> image = GetImageT<T>(std::move(*source), 0, true);
            source.reset();
            const auto written = write(image);
            EXPECT_TRUE(framesEqual(onlyFrame(written), *expected));
            EXPECT_EQ(memoryOfPlane(onlyFrame(written), 0), memory);
        };
        check([](Image<T>& i) { return owned(CreateFrameFromImageT(std::move(i), true)); });
        check([](ImageVariant& i) { return owned(CreateFrameFromImage(std::move(i), true)); });
        check([](ImageVariant& i) { return CreateBufferFromImage(std::move(i), true); });
    });
}

TEST(ImageMoveToBuffer, WhatIsNotOwnedIsCopied)
{
    const auto source = imageFrame(BufferApi::DT_DOUBLE, 1);
    const auto expected = imageFrame(BufferApi::DT_DOUBLE, 1);
    const auto ofView = owned(CreateFrameFromImageT(GetImageT<double>(*source, 0, true), true));
    EXPECT_TRUE(framesEqual(*ofView, *expected));
    EXPECT_TRUE(framesEqual(*source, *expected));
    EXPECT_NE(pixelsOf(*ofView, 0), pixelsOf(*source, 0));

    bool maskPixels[] = {true, false, true, true};
    Image<int> image(ImageData<int>(2, 2, 7), Mask(maskPixels, 2, 2, false));
    const int* const pixels = image.begin();
    const auto frame = owned(CreateFrameFromImageT(std::move(image), true));
    EXPECT_EQ(pixelsOf(*frame, 0), pixels);
    EXPECT_EQ(std::memcmp(memoryOf(*frame, I_Frame::COMPONENT_MASK, 0), maskPixels, 4), 0);

    Image<int> inBlock(std::make_unique<RTE::OwnedMemory>(16), std::make_unique<LazyMask>(2, 2, true), 2, 2);
    inBlock = 5;
    const auto copy = owned(CreateFrameFromImageT(std::move(inBlock), true));
    EXPECT_FALSE(inBlock.IsMaskSpawned());
    EXPECT_EQ(GetImageT<int>(*copy, 0)(1, 1), 5);
    EXPECT_TRUE(AllValuesValid(GetImageT<int>(*copy, 0)));
}

TEST(ImageMoveToBuffer, NothingIsAllocatedForPixels)
{
    Image<float> image(512, 512, 1.0F, true);
    image.GetScalarFields().Add("Field", 1.0F);
    forgetLargestAllocation();
    const auto buffer = CreateBufferFromImage(std::move(image), true);
    EXPECT_LT(largestAllocation(), 16U * 1024);
    EXPECT_FALSE(owned(CreateFrameFromImageT(Image<int>(2, 2, 7, false), false))->HasMask());
}

} // namespace
