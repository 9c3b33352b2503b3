// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageDataFromBuffer.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/Buffer/LazyPlane.h"
#include "Core/DataObjects/BufferLibDataAccess.h"
#include "Tests/Support/AllTypes.h"
#include "Tests/Support/Allocations.h"
#include "Tests/Support/Raises.h"

#include <functional>
#include <memory>
#include <utility>

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using BufferApi::I_Buffer;
using BufferApi::I_FrameImage;
using BufferApi::I_PlaneBase;
using DataObjects::Private::findPixelPlane;

const Math::Size2T<unsigned int> planeSize(64, 32);

std::unique_ptr<I_FrameImage> newFrame(BufferApi::E_DataType type)
{
    return std::unique_ptr<I_FrameImage>(
        BufferApi::CreateImageFrame(type, planeSize.width, planeSize.height, 3));
}

/// An image frame of this type, then a frame of vectors.
std::unique_ptr<I_Buffer> newBuffer(BufferApi::E_DataType type)
{
    std::unique_ptr<I_Buffer> buffer(BufferApi::CreateBuffer());
    buffer->AddFrame(newFrame(type).release());
    buffer->AddFrame(BufferApi::CreateVectorFrame2C(4, 4, 1, 1));
    return buffer;
}

I_FrameImage& firstFrame(const I_Buffer& buffer)
{
    return dynamic_cast<I_FrameImage&>(*buffer.GetFrame(0));
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
    forAllTypes([](auto tag) {
        using T = typename decltype(tag)::type;
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
    using Take = std::function<std::unique_ptr<ImageDataVariant>(I_Buffer&)>;
    forAllTypes([](auto tag) {
        using T = typename decltype(tag)::type;
        const auto held = [](ImageData<T>&& data) { return std::make_unique<ImageData<T>>(std::move(data)); };
        const Take takes[] = {
            [&](I_Buffer& buffer) {
                return held(GetImageDataT<T>(std::move(*findPixelPlane(firstFrame(buffer), 1))));
            },
            [&](I_Buffer& buffer) { return held(GetImageDataT<T>(std::move(firstFrame(buffer)), 1)); },
            [&](I_Buffer& buffer) { return held(GetImageDataT<T>(std::move(buffer), 0, 1)); },
            [](I_Buffer& buffer) { return GetImageData(std::move(firstFrame(buffer)), 1); },
            [](I_Buffer& buffer) { return GetImageData(std::move(buffer), 0, 1); }};
        for (const Take& take : takes) {
            auto buffer = newBuffer(BufferApi::GetDataType<T>());
            const void* const memory = memoryOf(*buffer, 1);
            const auto data = take(*buffer);
            expectPixels(CastImageDataTo<T>(*data), memory, true);
            EXPECT_EQ(memoryOf(*buffer, 1), nullptr);
            EXPECT_NE(memoryOf(*buffer, 2), nullptr);
            EXPECT_TRUE(raises("data-pointer is null", [&] { take(*buffer); }));
        }
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
    struct Case
    {
        const char* text;
        std::function<void(I_Buffer&)> call;
    };
    const char* const otherType = "Pixel-plane of given frame has not the required type";
    const Case cases[] = {
        {otherType, [](I_Buffer& b) { return GetImageDataT<int>(*findPixelPlane(firstFrame(b), 0)); }},
        {otherType, [](I_Buffer& b) { return GetImageDataT<int>(firstFrame(b), 0); }},
        {otherType, [](I_Buffer& b) { return GetImageDataT<int>(std::move(b), 0, 0); }},
        {"Invalid plane-index 3", [](I_Buffer& b) { return GetImageDataT<int>(firstFrame(b), 3); }},
        {"Invalid plane-index 4294967295",
         [](I_Buffer& b) { return GetImageData(std::move(firstFrame(b)), 0xFFFFFFFF); }},
        {"Frame type is not image.", [](I_Buffer& b) { return GetImageDataT<float>(b, 1, 0); }},
        {"Frame type is not image.", [](I_Buffer& b) { return GetImageDataT<float>(std::move(b), 2, 0); }},
        {"Frame type is not an image.", [](I_Buffer& b) { return GetImageData(b, 1, 0); }},
        {"Frame type is not an image.", [](I_Buffer& b) { return GetImageData(std::move(b), 1, 0); }},
        {"Frame type is not an image.", [](I_Buffer& b) { return GetImageData(std::as_const(b), 2, 0); }}};
    const auto buffer = newBuffer(BufferApi::DT_WORD);
    for (const Case& failure : cases) {
        EXPECT_TRUE(raises(failure.text, [&] { failure.call(*buffer); }));
    }
    EXPECT_NE(memoryOf(*buffer, 0), nullptr);
}

TEST(ImageDataFromBuffer, TypesOutsideTheSixAreRefused)
{
    const auto expectRefused = [](I_FrameImage& frame, const char* text) {
        EXPECT_TRUE(raises<RTE::Exception>(text, [&] { return GetImageData(frame, 0); }));
        EXPECT_TRUE(raises<RTE::Exception>(text, [&] { return GetImageData(std::as_const(frame), 0); }));
        EXPECT_TRUE(raises<RTE::Exception>(text, [&] { return GetImageData(std::move(frame), 0); }));
    };
    expectRefused(*newFrame(BufferApi::DT_RGB), "BufferApi::DT_RGB not supported yet.");
    const auto hollow = newFrame(BufferApi::DT_WORD);
    hollow->RemoveComponent(0);
    expectRefused(*hollow, "Input frame has unsupported data type");
}

} // namespace
