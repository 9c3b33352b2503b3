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

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using BufferApi::I_Frame;
using BufferApi::I_FrameImage;

TEST(ImageToBuffer, AFrameHoldsAllThatTheImageHolds)
{
    forAllTypes([]<typename T>(PixelTypes::Tag<T>) {
        const auto source = imageFrame(BufferApi::GetDataType<T>(), 1);
        const Image<T> view = GetImageT<T>(std::as_const(*source), 0);
        const Image<T> image(view);
        const ImageVariant& variant = image;
        EXPECT_TRUE(framesEqual(*owned(CreateFrameFromImageT(image, true)), *source));
        EXPECT_TRUE(framesEqual(*owned(CreateFrameFromImageT(view, true)), *source));
        EXPECT_TRUE(framesEqual(*owned(CreateFrameFromImage(variant, true)), *source));
        EXPECT_TRUE(framesEqual(onlyFrame(CreateBufferFromImageT(image, true)), *source));
        EXPECT_TRUE(framesEqual(onlyFrame(CreateBufferFromImage(variant, true)), *source));
        EXPECT_EQ(GetImageDataType(image.GetImageData()), BufferApi::GetDataType<T>());
        EXPECT_EQ(GetImageDataType(variant), BufferApi::GetDataType<T>());
        removeMask(*source);
        EXPECT_TRUE(framesEqual(*owned(CreateFrameFromImageT(image, false)), *source));
    });
}

TEST(ImageToBuffer, PixelsAloneGetDefaultScales)
{
    forAllTypes([]<typename T>(PixelTypes::Tag<T>) {
        const auto expected = newFrame(BufferApi::GetDataType<T>(), 3, 2);
        std::fill_n(static_cast<T*>(pixelsOf(*expected, 0)), 6, T(7));
        const auto check = [&](auto write, bool isMoved) {
            ImageData<T> data(3, 2, 7);
            const T* const pixels = data.begin();
            const auto written = write(data);
            EXPECT_TRUE(framesEqual(onlyFrame(written), *expected));
            EXPECT_EQ(pixelsOf(onlyFrame(written), 0) == pixels, isMoved);
            EXPECT_EQ(data.begin() == nullptr, isMoved);
        };
        using Data = ImageData<T>;
        using Variant = ImageDataVariant;
        check([](const Data& d) { return owned(CreateFrameFromImageDataT(d)); }, false);
        check([](const Variant& d) { return owned(CreateFrameFromImageData(d)); }, false);
        check([](const Data& d) { return CreateBufferFromImageDataT(d); }, false);
        check([](const Variant& d) { return CreateBufferFromImageData(d); }, false);
        check([](Data& d) { return owned(CreateFrameFromImageDataT(std::move(d))); }, true);
        check([](Variant& d) { return owned(CreateFrameFromImageData(std::move(d))); }, true);
        check([](Variant& d) { return CreateBufferFromImageData(std::move(d)); }, true);
    });
}

TEST(ImageToBuffer, AMaskThatNobodyAskedForIsAllValidAndNotMade)
{
    Image<float> image(8, 4, 1.0F, true);
    image.ReplaceMaskStrategy(std::make_unique<LazyMask>(8, 4, true));
    const auto frame = owned(CreateFrameFromImageT(image, true));
    EXPECT_TRUE(AllValuesValid(GetImage(*frame, 0, true)->GetMask()));
    GetImage(*frame, 0, true)->GetMask().Fill(false);
    CopyImageToFrameT(image, *frame, 0);
    EXPECT_TRUE(AllValuesValid(GetImage(*frame, 0, true)->GetMask()));
    EXPECT_FALSE(image.IsMaskSpawned());
}

TEST(ImageToBuffer, CopyingIntoAFrameReplacesWhatItHoldsButAddsNoMask)
{
    forAllTypes([]<typename T>(PixelTypes::Tag<T>) {
        const auto source = imageFrame(BufferApi::GetDataType<T>(), 1, 7);
        const auto target = imageFrame(BufferApi::GetDataType<T>(), 1, 8);
        BufferAttributes(*target).set("Only here", 1);
        GetScalarFields(*target, 0)->Add("Only here", 1.0F);
        const Image<T> image = GetImageT<T>(std::as_const(*source), 0);
        CopyImageToFrame(image, *target, 0);
        EXPECT_TRUE(framesEqual(*target, *source));
        removeMask(*target);
        CopyImageToFrame(image, *target, 0);
        EXPECT_FALSE(target->HasMask());
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
    const auto refuses = [](const QString& text, unsigned int width, unsigned int height, unsigned int z,
                            BufferApi::E_DataType type) {
        const auto frame = newFrame(type, 4, 4, 2);
        Image<unsigned short> image(width, height, 0, true);
        image.SetScaleX({9.0, 9.0, "m", "x"});
        expectRaised({{text, [&] { CopyImageDataToFrameT(image.GetImageData(), *frame, z); }},
                      {text, [&] { CopyImageToFrame(image, *frame, z); }}});
        EXPECT_EQ(frame->GetScaleX(), image.GetScaleX());
    };
    refuses("Invalid destination plane.", 5, 4, 2, BufferApi::DT_FLOAT);
    refuses("Size of image and image plane must be equal.", 5, 4, 1, BufferApi::DT_FLOAT);
    refuses("Size of image and image plane must be equal.", 4, 5, 1, BufferApi::DT_WORD);
    refuses("Date type of image and image plane must be equal.", 4, 4, 1, BufferApi::DT_FLOAT);
}

TEST(ImageToBuffer, TypesOutsideTheSixAreRefused)
{
    const StrangeImage image;
    const StrangeImageData data;
    const auto frame = newFrame(BufferApi::DT_FLOAT, 2, 2);
    EXPECT_EQ(GetImageDataType(image), BufferApi::DT_UNKNOWN);
    EXPECT_EQ(GetImageDataType(data), BufferApi::DT_UNKNOWN);
    const QString noImage = "Unsupported image type";
    const QString noData = "Unsupported image data type";
    expectRaised<RTE::Exception>({{noImage, [&] { return CreateFrameFromImage(image, true); }},
                                  {noImage, [&] { CopyImageToFrame(image, *frame, 0); }},
                                  {noImage, [] { return CreateFrameFromImage(StrangeImage(), true); }},
                                  {noData, [&] { return CreateFrameFromImageData(data); }},
                                  {noData, [&] { return CreateBufferFromImageData(data); }},
                                  {noData, [] { return CreateBufferFromImageData(StrangeImageData()); }}});
}

TEST(ImageToBuffer, WhatWasGivenUpOrMovedFromIsNotRead)
{
    ImageData<float> data(8, 4, 1.0F);
    const std::unique_ptr<float[]> taken(data.ReleaseRawPointer());
    Image<float> given(8, 4, 1.0F, true);
    owned(CreateFrameFromImageT(std::move(given), true)).reset();
    Image<float> image(8, 4, 1.0F, true);
    const Image<float> taker(std::move(image));
    Image<float> otherMask(8, 4, 1.0F, true);
    otherMask.GetMask() = Mask(1, 1, true);
    ImageVolume<float> volume(8, 4, 2, true);
    const ImageVolume<float> planes(std::move(volume));
    const auto frame = newFrame(BufferApi::DT_FLOAT, 8, 4);
    const QString noPixels = "data-pointer is null";
    const QString noPlanes = "ImageVolume must have at least one z-plane";
    expectRaised({{noPixels, [&] { return CreateFrameFromImageDataT(data); }},
                  {noPixels, [&] { return CreateFrameFromImageT(std::move(given), true); }},
                  {noPixels, [&] { return CreateFrameFromImage(image, true); }},
                  {noPixels, [&] { return CreateFrameFromImage(std::move(image), true); }},
                  {noPixels, [&] { CopyImageToFrame(image, *frame, 0); }},
                  {noPixels, [&] { CopyImageToTypedScalar(image, *frame, "a", 0); }},
                  {noPlanes, [&] { return CreateFrameFromImageVolume(volume, true); }},
                  {noPlanes, [&] { return CreateFrameFromImageVolume(std::move(volume), true); }},
                  {noPlanes, [&] { CopyImageVolumeToFrame(volume, *frame); }},
                  {"Source and destination have different sizes.",
                   [&] { return CreateFrameFromImageT(std::move(otherMask), true); }}});
}

} // namespace
