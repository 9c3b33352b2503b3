// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageFromBuffer.h"

#include "Core/Buffer/FrameBuilder.h"
#include "Core/DataObjects/BufferAttributes.h"
#include "Core/DataObjects/ScalarField.h"
#include "Tests/DataObjects/PlaneMemory.h"
#include "Tests/Support/AllTypes.h"
#include "Tests/Support/Allocations.h"
#include "Tests/Support/ImageFrames.h"
#include "Tests/Support/Raises.h"
#include "Tests/Support/Scales.h"

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using BufferApi::I_Buffer;
using BufferApi::I_Frame;
using BufferApi::I_FrameImage;

/// Plane 2 of frame 1, by each of the forms of a kind.
using Read = std::function<std::unique_ptr<ImageVariant>(I_Buffer&)>;

template <typename T>
std::unique_ptr<ImageVariant> held(Image<T>&& image)
{
    return std::make_unique<Image<T>>(std::move(image));
}

template <typename T>
std::vector<Read> viewsOf()
{
    return {[](I_Buffer& b) { return held(GetImageT<T>(imageFrameOf(b, 1), 2, true)); },
            [](I_Buffer& b) { return held(GetImageT<T>(&imageFrameOf(b, 1), 2, true)); },
            [](I_Buffer& b) { return held(GetImageT<T>(b, 1, 2, true)); },
            [](I_Buffer& b) { return held(GetImageT<T>(&b, 1, 2, true)); },
            [](I_Buffer& b) { return GetImage(imageFrameOf(b, 1), 2, true); },
            [](I_Buffer& b) { return GetImage(&imageFrameOf(b, 1), 2, true); },
            [](I_Buffer& b) { return GetImage(b, 1, 2, true); },
            [](I_Buffer& b) { return GetImage(&b, 1, 2, true); }};
}

template <typename T>
std::vector<Read> movesOf()
{
    return {[](I_Buffer& b) { return held(GetImageT<T>(std::move(imageFrameOf(b, 1)), 2, true)); },
            [](I_Buffer& b) { return held(GetImageT<T>(std::move(b), 1, 2, true)); },
            [](I_Buffer& b) { return GetImage(std::move(imageFrameOf(b, 1)), 2, true); },
            [](I_Buffer& b) { return GetImage(std::move(b), 1, 2, true); }};
}

/// The image is made of the memory that is given.
template <typename T>
void expectMemory(const ImageVariant& variant, const Memory& memory, bool owned)
{
    ASSERT_EQ(variant.GetDataType(), E_DataType(PixelTypes::number<T>));
    const auto& image = dynamic_cast<const Image<T>&>(variant);
    EXPECT_EQ(image.GetSize(), Math::Size2T<unsigned int>(31, 17));
    EXPECT_EQ(memoryOfPlane(image), memory);
    EXPECT_EQ(image.GetImageData().HasOwnerShip(), owned);
    EXPECT_EQ(image.GetMask().HasOwnerShip(), owned);
    EXPECT_EQ(image.GetScalarFields().GetCount(), 2U);
}

void changeScalesAndAttributes(ImageVariant& image)
{
    image.SetScaleX(scaleOf(7));
    image.GetScaleY().set(scaleOf(8));
    image.SetScaleZ(scaleOf(9));
    image.GetScaleI().set(scaleOf(10));
    image.GetAttributes().remove("Acq");
    image.GetAttributes().set("Operator", QStringLiteral("changed"));
}

TEST(ImageFromBuffer, AViewIsBoundToItsFrame)
{
    forAllTypes([]<typename T>(PixelTypes::Tag<T>) {
        for (const Read& read : viewsOf<T>()) {
            const auto buffer = imageBuffer(BufferApi::GetDataType<T>(), 3, 2);
            I_FrameImage& frame = imageFrameOf(*buffer, 1);
            const auto view = read(*buffer);
            expectMemory<T>(*view, memoryOfPlane(frame, 2), false);
            EXPECT_EQ(view->GetScaleZ(), frame.GetScaleZ());
            changeScalesAndAttributes(*view);
            EXPECT_EQ(scalesOf(frame), (FourScales{scaleOf(7), scaleOf(8), scaleOf(9), scaleOf(10)}));
            EXPECT_EQ(frame.FindAttribute("Acq.Gain"), nullptr);
            EXPECT_EQ(BufferAttributes(frame).attributeValue("Operator").value<QString>(), "changed");
            view->GetScalarFields().Add("Added", 1.5F);
            EXPECT_NE(frame.GetComponent("TS:Added"), nullptr);
        }
    });
}

TEST(ImageFromBuffer, ConstFormsViewToo)
{
    const auto buffer = imageBuffer(BufferApi::DT_INT32, 3, 2);
    const I_Buffer& constBuffer = *buffer;
    const I_FrameImage& frame = imageFrameOf(constBuffer, 1);
    const Memory memory = memoryOfPlane(frame, 2);
    expectMemory<int>(GetImageT<int>(frame, 2), memory, false);
    expectMemory<int>(GetImageT<int>(constBuffer, 1, 2), memory, false);
    expectMemory<int>(GetImageT<int>(&constBuffer, 1, 2), memory, false);
    expectMemory<int>(*GetImage(frame, 2), memory, false);
    expectMemory<int>(*GetImage(constBuffer, 1, 2), memory, false);
    expectMemory<int>(*GetImage(&constBuffer, 1, 2), memory, false);
}

TEST(ImageFromBuffer, AnImageTakenOutOfAFrameStandsByItself)
{
    forAllTypes([]<typename T>(PixelTypes::Tag<T>) {
        for (const Read& read : movesOf<T>()) {
            auto buffer = imageBuffer(BufferApi::GetDataType<T>(), 3, 2);
            const I_FrameImage& frame = imageFrameOf(*buffer, 1);
            const Memory memory = memoryOfPlane(frame, 2);
            const Memory memoryOfOther = memoryOfPlane(frame, 1);
            const FourScales scales = scalesOf(frame);
            const auto image = read(*buffer);
            EXPECT_EQ(scalesOf(*image), scales);
            changeScalesAndAttributes(*image);
            EXPECT_EQ(scalesOf(frame), scales);
            EXPECT_NE(frame.FindAttribute("Acq.Gain"), nullptr);
            EXPECT_EQ(memoryOfPlane(frame, 2), noMemory);
            EXPECT_EQ(memoryOfPlane(frame, 1), memoryOfOther);
            buffer.reset();
            expectMemory<T>(*image, memory, true);
            EXPECT_EQ(image->GetAttributes().attributeValue("Times").template value<std::vector<float>>(),
                      std::vector<float>({0.5F, 1.5F}));
        }
    });
}

TEST(ImageFromBuffer, NoFormAllocatesPixels)
{
    for (const bool withMask : {false, true}) {
        const auto frame = newFrame(BufferApi::DT_WORD, 512, 512);
        if (withMask) {
            frame->AddMask({});
        }
        BufferApi::CreateTypedScalarInFrame(frame.get(), "Field", BufferApi::DT_BYTE);
        forgetLargestAllocation();
        const auto view = GetImage(*frame, 0, withMask);
        static_cast<void>(GetImage(std::as_const(*frame), 0));
        const auto image = GetImage(std::move(*frame), 0, withMask);
        EXPECT_LT(largestAllocation(), 16U * 1024);
        EXPECT_EQ(view->IsMaskSpawned(), withMask);
        EXPECT_EQ(image->IsMaskSpawned(), withMask);
    }
}

TEST(ImageFromBuffer, AFrameWithoutAMaskLeavesTheImageOneOfItsOwn)
{
    const auto frame = imageFrame(BufferApi::DT_FLOAT, 1);
    removeMask(*frame);
    const auto expectOwnMask = [&](const ImageVariant& image) {
        EXPECT_TRUE(image.GetMask().HasOwnerShip());
        EXPECT_TRUE(AllValuesValid(image));
        EXPECT_FALSE(frame->HasMask());
    };
    expectOwnMask(*GetImage(*frame, 0, false));
    expectOwnMask(*GetImage(std::as_const(*frame), 0));

    const auto withMask = AttachMaskAndGetImage(frame.get(), 0);
    EXPECT_EQ(withMask->GetMask().GetRawPointer(), memoryOf(*frame, I_Frame::COMPONENT_MASK, 0));
    EXPECT_TRUE(AllValuesValid(*withMask));
    withMask->GetMask()(2, 1) = false;
    EXPECT_FALSE(AttachMaskAndGetImage(frame.get(), 0)->GetMask()(2, 1));

    removeMask(*frame);
    expectOwnMask(*GetImage(std::move(*frame), 0, false));
}

TEST(ImageFromBuffer, FailuresComeInOrder)
{
    // Three planes without a mask, then a frame of vectors.
    const auto buffer = bufferOf(BufferApi::CreateImageFrame(BufferApi::DT_WORD, 4, 4, 3),
                                 BufferApi::CreateVectorFrame2C(4, 4, 1, 1));
    I_Buffer& b = *buffer;
    I_FrameImage& frame = imageFrameOf(b, 0);
    I_FrameImage* const noFrame = nullptr;
    I_Buffer* const noBuffer = nullptr;
    const QString noMask = "Frame requires a mask, but has no mask.";
    const QString otherType = "Pixel-plane of given frame has not the required type";
    const QString notImage = "Frame type is not image.";
    const QString notAnImage = "Frame type is not an image.";
    expectRaised({{"Frame is NULL.", [&] { return GetImageT<int>(noFrame, 0, true); }},
                  {"Frame is NULL.", [&] { return GetImage(noFrame, 0, true); }},
                  {"Buffer is NULL", [&] { return GetImageT<int>(noBuffer, 0, 0, true); }},
                  {"Buffer is NULL", [&] { return GetImage(std::as_const(noBuffer), 0, 0); }},
                  {"ImageFrame is NULL", [] { return AttachMaskAndGetImage(nullptr, 0); }},
                  {notImage, [&] { return GetImageT<float>(b, 1, 0, true); }},
                  {notImage, [&] { return GetImageT<float>(std::as_const(b), 2, 0); }},
                  {notAnImage, [&] { return GetImage(b, 1, 0, true); }},
                  {notAnImage, [&] { return GetImage(std::move(b), 2, 0, true); }},
                  {noMask, [&] { return GetImageT<int>(frame, 3, true); }},
                  {"Z-Plane for given frame not valid", [&] { return GetImageT<int>(frame, 3, false); }},
                  {otherType, [&] { return GetImageT<int>(frame, 0, false); }},
                  {"Invalid plane-index 3", [&] { return GetImageT<int>(std::move(frame), 3, true); }},
                  {otherType, [&] { return GetImageT<int>(std::move(frame), 0, true); }},
                  {noMask, [&] { return GetImage(std::move(b), 0, 0, true); }}});
}

TEST(ImageFromBuffer, PlanesOutOfAFileNeedNotHaveTheSizeOfTheirFrame)
{
    using BufferApi::FrameKind;
    const auto pixels = [](unsigned int width) {
        return onePlane(I_FrameImage::COMPONENT_PIXEL, BufferApi::DT_BYTE, width, 2);
    };
    const auto smallMask = frameOfParts(FrameKind::Image, 3, 2, pixels(3),
                                        onePlane(I_Frame::COMPONENT_MASK, BufferApi::DT_BYTE, 1, 2));
    const auto smallPixels = frameOfParts(FrameKind::Image, 3, 2, pixels(1));
    auto& masked = dynamic_cast<I_FrameImage&>(*smallMask);
    auto& plain = dynamic_cast<I_FrameImage&>(*smallPixels);
    const QString oddMask = "Mask has invalid size.";
    expectRaised({{oddMask, [&] { return GetImage(masked, 0, false); }},
                  {oddMask, [&] { return GetImage(std::move(masked), 0, false); }},
                  {"Size of image and image plane must be equal.", [&] { return GetImage(plain, 0, false); }},
                  {oddMask, [&] { return GetImage(std::move(plain), 0, false); }}});
}

TEST(ImageFromBuffer, TypesOutsideTheSixAreRefused)
{
    const auto colour = imageFrame(BufferApi::DT_RGB, 1);
    const auto hollow = imageFrame(BufferApi::DT_WORD, 1);
    hollow->RemoveComponent(0);
    for (const auto& [held, text] : {std::pair(colour.get(), "RGB image is not supported."),
                                     std::pair(hollow.get(), "Image has unsupported data type")}) {
        I_FrameImage& frame = *held;
        expectRaised<RTE::Exception>({{text, [&] { return GetImage(frame, 0, false); }},
                                      {text, [&] { return GetImage(std::as_const(frame), 0); }},
                                      {text, [&] { return GetImage(std::move(frame), 0, false); }}});
    }
}

} // namespace
