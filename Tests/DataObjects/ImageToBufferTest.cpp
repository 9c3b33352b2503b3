// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageToBuffer.h"

#include "Core/DataObjects/BufferAttributes.h"
#include "Core/DataObjects/ImageFromBuffer.h"
#include "Core/DataObjects/ImageMoveToBuffer.h"
#include "Core/DataObjects/ImageVolumeToFrame.h"
#include "Core/DataObjects/LazyMask.h"
#include "Core/DataObjects/ScalarFieldFromFrame.h"
#include "Tests/DataObjects/StrangeImage.h"
#include "Tests/Support/AllTypes.h"
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
using BufferApi::I_Frame;
using BufferApi::I_FrameImage;

using FramePointer = std::unique_ptr<I_FrameImage>;

/// Without what `CreateFrameFromImageData` leaves out.
FramePointer pixelsAlone(const I_FrameImage& frame)
{
    FramePointer pixels(
        BufferApi::CreateImageFrame(frame.GetDataType(), frame.GetWidth(), frame.GetHeight(), 1));
    std::memcpy(pixelsOf(*pixels, 0), pixelsOf(frame, 0),
                1ULL * frame.GetWidth() * frame.GetHeight() *
                    BufferApi::GetDataTypeSize(frame.GetDataType()));
    return pixels;
}

TEST(ImageToBuffer, AFrameHoldsAllThatTheImageHolds)
{
    forAllTypes([](auto tag) {
        using T = typename decltype(tag)::type;
        const auto source = imageFrame(BufferApi::GetDataType<T>(), 1);
        const Image<T> view = GetImageT<T>(std::as_const(*source), 0);
        const Image<T> image(view);
        const ImageVariant& variant = image;
        EXPECT_TRUE(framesEqual(*FramePointer(CreateFrameFromImageT(image, true)), *source));
        EXPECT_TRUE(framesEqual(*FramePointer(CreateFrameFromImageT(view, true)), *source));
        EXPECT_TRUE(framesEqual(*FramePointer(CreateFrameFromImage(variant, true)), *source));
        EXPECT_TRUE(framesEqual(imageFrameOf(*CreateBufferFromImageT(image, true), 0), *source));
        EXPECT_TRUE(framesEqual(imageFrameOf(*CreateBufferFromImage(variant, true), 0), *source));
        removeMask(*source);
        EXPECT_TRUE(framesEqual(*FramePointer(CreateFrameFromImageT(image, false)), *source));

        const auto pixels = pixelsAlone(*source);
        const ImageData<T>& data = image.GetImageData();
        const ImageDataVariant& dataVariant = data;
        EXPECT_TRUE(framesEqual(*FramePointer(CreateFrameFromImageDataT(data)), *pixels));
        EXPECT_TRUE(framesEqual(*FramePointer(CreateFrameFromImageData(dataVariant)), *pixels));
        EXPECT_TRUE(framesEqual(imageFrameOf(*CreateBufferFromImageDataT(data), 0), *pixels));
        EXPECT_TRUE(framesEqual(imageFrameOf(*CreateBufferFromImageData(dataVariant), 0), *pixels));
        EXPECT_EQ(GetImageDataType(dataVariant), BufferApi::GetDataType<T>());
        EXPECT_EQ(GetImageDataType(variant), BufferApi::GetDataType<T>());
    });
}

TEST(ImageToBuffer, AMaskThatNobodyAskedForIsAllValidAndNotMade)
{
    Image<float> image(8, 4, 1.0F, true);
    image.ReplaceMaskStrategy(std::make_unique<LazyMask>(8, 4, true));
    const FramePointer frame(CreateFrameFromImageT(image, true));
    EXPECT_TRUE(AllValuesValid(GetImage(*frame, 0, true)->GetMask()));
    GetImage(*frame, 0, true)->GetMask().Fill(false);
    CopyImageToFrameT(image, *frame, 0);
    EXPECT_TRUE(AllValuesValid(GetImage(*frame, 0, true)->GetMask()));
    EXPECT_FALSE(image.IsMaskSpawned());
}

TEST(ImageToBuffer, CopyingIntoAFrameReplacesWhatItHolds)
{
    forAllTypes([](auto tag) {
        using T = typename decltype(tag)::type;
        const auto source = imageFrame(BufferApi::GetDataType<T>(), 1, 7);
        const auto target = imageFrame(BufferApi::GetDataType<T>(), 1, 8);
        BufferAttributes(*target).set("Only here", 1);
        GetScalarFields(*target, 0)->Add("Only here", 1.0F);
        const Image<T> image = GetImageT<T>(std::as_const(*source), 0);
        CopyImageToFrame(image, *target, 0);
        EXPECT_TRUE(framesEqual(*target, *source));
    });
}

TEST(ImageToBuffer, CopyingIntoAPlaneOfManyFillsThatPlaneButTheFieldsOfTheFirst)
{
    const auto source = imageFrame(BufferApi::DT_WORD, 1, 7);
    const auto target = imageFrame(BufferApi::DT_WORD, 3, 8);
    const auto before = imageFrame(BufferApi::DT_WORD, 3, 8);
    CopyImageToFrameT(GetImageT<unsigned short>(*source, 0, true), *target, 2);
    const auto same = [&](const std::string& component, unsigned int z, const I_Frame& other,
                          unsigned int otherZ) {
        return planesEqual(target->GetComponent(component)->GetPlane(z),
                           other.GetComponent(component)->GetPlane(otherZ));
    };
    for (const std::string& component : {I_FrameImage::COMPONENT_PIXEL, I_Frame::COMPONENT_MASK}) {
        EXPECT_TRUE(same(component, 2, *source, 0));
        EXPECT_TRUE(same(component, 0, *before, 0));
    }
    EXPECT_TRUE(same(peakRatio, 0, *source, 0));
    EXPECT_TRUE(same(peakRatio, 2, *before, 2));
}

TEST(ImageToBuffer, AFrameWithoutAMaskGetsNone)
{
    const auto source = imageFrame(BufferApi::DT_WORD, 1, 7);
    const auto target = imageFrame(BufferApi::DT_WORD, 1, 8);
    removeMask(*target);
    CopyImageToFrame(*GetImage(*source, 0, true), *target, 0);
    EXPECT_FALSE(target->HasMask());
}

TEST(ImageToBuffer, AViewOfThisVeryPlaneGivesItsScalesOnly)
{
    const auto frame = imageFrame(BufferApi::DT_BYTE, 2);
    const auto expected = imageFrame(BufferApi::DT_BYTE, 2);
    CopyImageToFrame(*GetImage(*frame, 1, true), *frame, 1);
    EXPECT_TRUE(framesEqual(*frame, *expected));

    // Pixels of the frame, all else of its own.
    Image<unsigned char> image(static_cast<unsigned char*>(pixelsOf(*frame, 1)), 31, 17, false, true);
    image.SetScaleY({9.0, 9.0, "m", "y"});
    CopyImageToFrame(image, *frame, 1);
    expected->SetScaleX(image.GetScaleX());
    expected->SetScaleY(image.GetScaleY());
    expected->SetScaleZ(image.GetScaleZ());
    expected->SetScaleI(image.GetScaleI());
    EXPECT_TRUE(framesEqual(*frame, *expected));
}

TEST(ImageToBuffer, AViewOfAnotherPlaneKeepsTheAttributesThatBothHave)
{
    const auto frame = imageFrame(BufferApi::DT_BYTE, 2);
    CopyImageToFrame(*GetImage(*frame, 1, true), *frame, 0);
    EXPECT_EQ(BufferAttributes(*frame).attributeValue("Acq.Gain").value<double>(), 2.5);
    EXPECT_TRUE(planesEqual(frame->GetPlane(0, 0), frame->GetPlane(0, 1)));
}

TEST(ImageToBuffer, CopyingChecksPlaneSizeAndTypeInThisOrderAndAfterTheScales)
{
    struct Case
    {
        unsigned int width;
        unsigned int height;
        unsigned int z;
        BufferApi::E_DataType type;
        const char* text;
    };
    for (const Case& failure :
         {Case{5, 4, 2, BufferApi::DT_FLOAT, "Invalid destination plane."},
          {5, 4, 1, BufferApi::DT_FLOAT, "Size of image and image plane must be equal."},
          {4, 5, 1, BufferApi::DT_WORD, "Size of image and image plane must be equal."},
          {4, 4, 1, BufferApi::DT_FLOAT, "Date type of image and image plane must be equal."}}) {
        const FramePointer frame(BufferApi::CreateImageFrame(failure.type, 4, 4, 2));
        Image<unsigned short> image(failure.width, failure.height, 0, true);
        EXPECT_TRUE(
            raises(failure.text, [&] { CopyImageDataToFrameT(image.GetImageData(), *frame, failure.z); }));
        image.SetScaleX({9.0, 9.0, "m", "x"});
        EXPECT_TRUE(raises(failure.text, [&] { CopyImageToFrame(image, *frame, failure.z); }));
        EXPECT_EQ(frame->GetScaleX(), image.GetScaleX());
    }
}

TEST(ImageToBuffer, TypesOutsideTheSixAreRefused)
{
    const StrangeImage image;
    const StrangeImageData data;
    const FramePointer frame(BufferApi::CreateImageFrame(BufferApi::DT_FLOAT, 2, 2, 1));
    EXPECT_EQ(GetImageDataType(image), BufferApi::DT_UNKNOWN);
    EXPECT_EQ(GetImageDataType(data), BufferApi::DT_UNKNOWN);
    const QString noImage = "Unsupported image type";
    const QString noData = "Unsupported image data type";
    EXPECT_TRUE(raises<RTE::Exception>(noImage, [&] { return CreateFrameFromImage(image, true); }));
    EXPECT_TRUE(raises<RTE::Exception>(noImage, [&] { CopyImageToFrame(image, *frame, 0); }));
    EXPECT_TRUE(raises<RTE::Exception>(noData, [&] { return CreateFrameFromImageData(data); }));
    EXPECT_TRUE(raises<RTE::Exception>(noData, [&] { return CreateBufferFromImageData(data); }));
}

TEST(ImageToBuffer, PixelsThatWereGivenUpAreNotRead)
{
    ImageData<float> data(8, 4, 1.0F);
    const std::unique_ptr<float[]> taken(data.ReleaseRawPointer());
    EXPECT_TRUE(raises("data-pointer is null", [&] { return CreateFrameFromImageDataT(data); }));
}

TEST(ImageToBuffer, WhatWasMovedFromIsNotRead)
{
    Image<float> image(8, 4, 1.0F, true);
    const Image<float> taken(std::move(image));
    ImageVolume<float> volume(8, 4, 2, true);
    const ImageVolume<float> planes(std::move(volume));
    const std::unique_ptr<I_FrameImage> frame(BufferApi::CreateImageFrame(BufferApi::DT_FLOAT, 8, 4, 1));
    const QString noPixels = "data-pointer is null";
    const QString noPlanes = "ImageVolume must have at least one z-plane";
    for (const auto& [text, call] :
         {std::pair<QString, std::function<void()>>{noPixels,
                                                    [&] { return CreateFrameFromImage(image, true); }},
          {noPixels, [&] { return CreateFrameFromImage(std::move(image), true); }},
          {noPixels, [&] { CopyImageToFrame(image, *frame, 0); }},
          {noPixels, [&] { CopyImageToTypedScalar(image, *frame, "a", 0); }},
          {noPlanes, [&] { return CreateFrameFromImageVolume(volume, true); }},
          {noPlanes, [&] { return CreateFrameFromImageVolume(std::move(volume), true); }},
          {noPlanes, [&] { CopyImageVolumeToFrame(volume, *frame); }}}) {
        EXPECT_TRUE(raises(text, call));
    }
}

} // namespace
