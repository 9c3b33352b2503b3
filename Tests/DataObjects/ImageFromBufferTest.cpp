// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageFromBuffer.h"

#include "Core/Buffer/FrameBuilder.h"
#include "Core/DataObjects/BufferAttributes.h"
#include "Core/DataObjects/ScalarField.h"
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

const Zt::LinearScale otherScale(3.0, 4.0, "s", "other");

const void* maskOf(const I_Frame& frame, unsigned int z)
{
    return memoryOf(frame, I_Frame::COMPONENT_MASK, z);
}

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

template <typename T>
const Image<T>& typed(const ImageVariant& image)
{
    EXPECT_EQ(image.GetDataType(), E_DataType(PixelTypes::number<T>));
    return dynamic_cast<const Image<T>&>(image);
}

/// Pixels, mask and a scalar field have the memory that is given.
template <typename T>
void expectMemory(const Image<T>& image, const void* pixels, const void* mask, const void* field, bool owned)
{
    EXPECT_EQ(image.GetSize(), Math::Size2T<unsigned int>(31, 17));
    EXPECT_EQ(image.begin(), pixels);
    EXPECT_EQ(image.GetImageData().HasOwnerShip(), owned);
    EXPECT_EQ(image.GetMask().GetRawPointer(), mask);
    EXPECT_EQ(image.GetMask().HasOwnerShip(), owned);
    const auto peakRatio = image.GetScalarFields().Get("Peak ratio");
    EXPECT_EQ(CastScalarFieldTo<float>(*peakRatio).begin(), field);
    EXPECT_EQ(image.GetScalarFields().GetCount(), 2U);
}

void changeScalesAndAttributes(ImageVariant& image)
{
    image.SetScaleX(otherScale);
    image.GetScaleY().set(otherScale);
    image.SetScaleZ(otherScale);
    image.GetScaleI().set(otherScale);
    image.GetAttributes().remove("Acq");
    image.GetAttributes().set("Operator", QStringLiteral("changed"));
}

void expectChanged(const I_Frame& frame)
{
    for (const Zt::LinearScale* scale :
         {&frame.GetScaleX(), &frame.GetScaleY(), &frame.GetScaleZ(), &frame.GetScaleI()}) {
        EXPECT_EQ(*scale, otherScale);
    }
    EXPECT_EQ(frame.FindAttribute("Acq.Gain"), nullptr);
    EXPECT_EQ(BufferAttributes(const_cast<I_Frame&>(frame)).attributeValue("Operator").value<QString>(),
              "changed");
}

TEST(ImageFromBuffer, AViewIsBoundToItsFrame)
{
    forAllTypes([](auto tag) {
        using T = typename decltype(tag)::type;
        for (const Read& read : viewsOf<T>()) {
            const auto buffer = imageBuffer(BufferApi::GetDataType<T>(), 3, 2);
            I_FrameImage& frame = imageFrameOf(*buffer, 1);
            const auto view = read(*buffer);
            expectMemory(typed<T>(*view), pixelsOf(frame, 2), maskOf(frame, 2), memoryOf(frame, peakRatio, 2),
                         false);
            EXPECT_EQ(view->GetScaleZ(), frame.GetScaleZ());
            changeScalesAndAttributes(*view);
            expectChanged(frame);
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
    const auto expectView = [&](const ImageVariant& view) {
        expectMemory(typed<int>(view), pixelsOf(frame, 2), maskOf(frame, 2), memoryOf(frame, peakRatio, 2),
                     false);
    };
    expectView(GetImageT<int>(frame, 2));
    expectView(GetImageT<int>(constBuffer, 1, 2));
    expectView(GetImageT<int>(&constBuffer, 1, 2));
    expectView(*GetImage(frame, 2));
    expectView(*GetImage(constBuffer, 1, 2));
    expectView(*GetImage(&constBuffer, 1, 2));
}

TEST(ImageFromBuffer, AnImageTakenOutOfAFrameStandsByItself)
{
    forAllTypes([](auto tag) {
        using T = typename decltype(tag)::type;
        for (const Read& read : movesOf<T>()) {
            auto buffer = imageBuffer(BufferApi::GetDataType<T>(), 3, 2);
            const I_FrameImage& frame = imageFrameOf(*buffer, 1);
            const void* const pixels = pixelsOf(frame, 2);
            const void* const mask = maskOf(frame, 2);
            const void* const field = memoryOf(frame, peakRatio, 2);
            const Zt::LinearScale scaleY = frame.GetScaleY();
            const Zt::LinearScale scaleI = frame.GetScaleI();
            const auto image = read(*buffer);
            EXPECT_EQ(image->GetScaleY(), scaleY);
            EXPECT_EQ(image->GetScaleI(), scaleI);
            changeScalesAndAttributes(*image);
            EXPECT_EQ(frame.GetScaleY(), scaleY);
            EXPECT_NE(frame.FindAttribute("Acq.Gain"), nullptr);
            for (const std::string& component :
                 {I_FrameImage::COMPONENT_PIXEL, I_Frame::COMPONENT_MASK, peakRatio, fieldHeight}) {
                EXPECT_EQ(memoryOf(frame, component, 2), nullptr) << component;
                EXPECT_NE(memoryOf(frame, component, 1), nullptr) << component;
            }
            buffer.reset();
            expectMemory(typed<T>(*image), pixels, mask, field, true);
            EXPECT_EQ(image->GetAttributes().attributeValue("Times").template value<std::vector<float>>(),
                      std::vector<float>({0.5F, 1.5F}));
        }
    });
}

TEST(ImageFromBuffer, NoFormAllocatesPixels)
{
    for (const bool withMask : {false, true}) {
        const std::unique_ptr<I_FrameImage> frame(
            BufferApi::CreateImageFrame(BufferApi::DT_WORD, 512, 512, 1));
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
    EXPECT_EQ(withMask->GetMask().GetRawPointer(), maskOf(*frame, 0));
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
