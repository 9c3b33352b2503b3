// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageDataFromBuffer.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/Buffer/LazyPlane.h"
#include "Core/DataObjects/BufferLibDataAccess.h"
#include "Tests/Support/AllTypes.h"
#include "Tests/Support/Allocations.h"
#include "Tests/Support/ImageFrames.h"
#include "Tests/Support/Raises.h"

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using BufferApi::I_Buffer;
using BufferApi::I_FrameImage;
using BufferApi::I_PlaneBase;
using DataObjects::Private::findPixelPlane;

const Math::Size2T<unsigned int> planeSize(64, 32);

/// An image frame of this type, then a frame of vectors.
std::unique_ptr<I_Buffer> newBuffer(BufferApi::E_DataType type)
{
    return bufferOf(BufferApi::CreateImageFrame(type, planeSize.width, planeSize.height, 3),
                    BufferApi::CreateVectorFrame2C(4, 4, 1, 1));
}

I_FrameImage& firstFrame(const I_Buffer& buffer)
{
    return imageFrameOf(buffer, 0);
}

const void* memoryOf(const I_Buffer& buffer, unsigned int z)
{
    return findPixelPlane(*buffer.GetFrame(0), z)->GetData();
}

template <typename T>
void expectPixels(const ImageData<T>& data, const void* memory, bool owned)
{
    EXPECT_EQ(data.GetRawPointer(), memory);
    EXPECT_EQ(data.GetSize(), planeSize);
    EXPECT_EQ(data.HasOwnerShip(), owned);
}

TEST(ImageDataFromBuffer, AnObjectThatStaysIsViewed)
{
    forAllTypes([]<typename T>(PixelTypes::Tag<T>) {
        const auto buffer = newBuffer(BufferApi::GetDataType<T>());
        I_FrameImage& frame = firstFrame(*buffer);
        const void* const memory = memoryOf(*buffer, 2);
        expectPixels(GetImageDataT<T>(*findPixelPlane(frame, 2)), memory, false);
        expectPixels(GetImageDataT<T>(frame, 2), memory, false);
        expectPixels(GetImageDataT<T>(*buffer, 0, 2), memory, false);
        expectPixels(CastImageDataTo<T>(*GetImageData(frame, 2)), memory, false);
        expectPixels(CastImageDataTo<T>(*GetImageData(*buffer, 0, 2)), memory, false);
        expectPixels(CastImageDataTo<T>(*GetImageData(std::as_const(frame), 2)), memory, false);
        expectPixels(CastImageDataTo<T>(*GetImageData(std::as_const(*buffer), 0, 2)), memory, false);
    });
}

TEST(ImageDataFromBuffer, AnObjectThatIsGivenUpLosesTheMemoryOfThatPlaneAlone)
{
    forAllTypes([]<typename T>(PixelTypes::Tag<T>) {
        const auto check = [](auto take) {
            auto buffer = newBuffer(BufferApi::GetDataType<T>());
            const void* const memory = memoryOf(*buffer, 1);
            const auto data = take(*buffer);
            if constexpr (std::is_same_v<decltype(data), const ImageData<T>>) {
                expectPixels(data, memory, true);
            } else {
                expectPixels(CastImageDataTo<T>(*data), memory, true);
            }
            EXPECT_EQ(memoryOf(*buffer, 1), nullptr);
            EXPECT_NE(memoryOf(*buffer, 2), nullptr);
            EXPECT_TRUE(raises("data-pointer is null", [&] { take(*buffer); }));
        };
        check([](I_Buffer& b) { return GetImageDataT<T>(std::move(*findPixelPlane(firstFrame(b), 1))); });
        check([](I_Buffer& b) { return GetImageDataT<T>(std::move(firstFrame(b)), 1); });
        check([](I_Buffer& b) { return GetImageDataT<T>(std::move(b), 0, 1); });
        check([](I_Buffer& b) { return GetImageData(std::move(firstFrame(b)), 1); });
        check([](I_Buffer& b) { return GetImageData(std::move(b), 0, 1); });
    });
}

TEST(ImageDataFromBuffer, NoPixelIsAllocated)
{
    const auto buffer = newBuffer(BufferApi::DT_WORD);
    forgetLargestAllocation();
    static_cast<void>(GetImageData(*buffer, 0, 0));
    static_cast<void>(GetImageData(std::as_const(*buffer), 0, 0));
    static_cast<void>(GetImageData(std::move(*buffer), 0, 0));
    EXPECT_LT(largestAllocation(), planeSize.width * planeSize.height);
    const auto data = GetImageDataT<unsigned short>(*buffer, 0, 1);
    EXPECT_EQ(allocationsDuring([&] { return GetImageDataT<unsigned short>(std::move(*buffer), 0, 1); }), 0U);
}

/// Counts how often a file was read.
class CountingSource : public BufferApi::PlaneSource
{
public:
    void read(void* destination, unsigned long long bytes) const override
    {
        ++m_reads;
        std::fill_n(static_cast<unsigned char*>(destination), bytes, static_cast<unsigned char>(7));
    }
    [[nodiscard]] int reads() const noexcept { return m_reads; }

private:
    mutable int m_reads = 0;
};

TEST(ImageDataFromBuffer, TakingAPlaneOfAFileReadsIt)
{
    const auto source = std::make_shared<CountingSource>();
    const auto plane = BufferApi::createLazyPlane(BufferApi::DT_BYTE, 3, 2, source);
    const auto data = GetImageDataT<unsigned char>(std::move(*plane));
    EXPECT_EQ(source->reads(), 1);
    EXPECT_EQ(data(2, 1), 7);
    EXPECT_EQ(plane->GetData(), nullptr);
}

TEST(ImageDataFromBuffer, FailuresAreTold)
{
    const auto buffer = newBuffer(BufferApi::DT_WORD);
    I_Buffer& b = *buffer;
    I_FrameImage& frame = firstFrame(b);
    const QString otherType = "Pixel-plane of given frame has not the required type";
    const QString notAnImage = "Frame type is not an image.";
    expectRaised(
        {{otherType, [&] { return GetImageDataT<int>(*findPixelPlane(frame, 0)); }},
         {otherType, [&] { return GetImageDataT<int>(frame, 0); }},
         {otherType, [&] { return GetImageDataT<int>(std::move(b), 0, 0); }},
         {"Invalid plane-index 3", [&] { return GetImageDataT<int>(frame, 3); }},
         {"Invalid plane-index 4294967295", [&] { return GetImageData(std::move(frame), 0xFFFFFFFF); }},
         {"Frame type is not image.", [&] { return GetImageDataT<float>(b, 1, 0); }},
         {"Frame type is not image.", [&] { return GetImageDataT<float>(std::move(b), 2, 0); }},
         {notAnImage, [&] { return GetImageData(b, 1, 0); }},
         {notAnImage, [&] { return GetImageData(std::move(b), 1, 0); }},
         {notAnImage, [&] { return GetImageData(std::as_const(b), 2, 0); }}});
    EXPECT_NE(memoryOf(*buffer, 0), nullptr);
}

TEST(ImageDataFromBuffer, TypesOutsideTheSixAreRefused)
{
    const auto colour = newFrame(BufferApi::DT_RGB, 2, 2);
    const auto hollow = newFrame(BufferApi::DT_WORD, 2, 2);
    hollow->RemoveComponent(0);
    for (const auto& [held, text] : {std::pair(colour.get(), "BufferApi::DT_RGB not supported yet."),
                                     std::pair(hollow.get(), "Input frame has unsupported data type")}) {
        I_FrameImage& frame = *held;
        expectRaised<RTE::Exception>({{text, [&] { return GetImageData(frame, 0); }},
                                      {text, [&] { return GetImageData(std::as_const(frame), 0); }},
                                      {text, [&] { return GetImageData(std::move(frame), 0); }}});
    }
}

} // namespace
