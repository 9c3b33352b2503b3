// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/Variant.h"

#include "Core/DataObjects/ImageBuffer.h"
#include "Core/DataObjects/ImageExtraction.h"
#include "Tests/Support/Raises.h"

#include <cstdint>
#include <cstring>

namespace
{

using namespace DataObjects;
using namespace TestSupport;

/// The place of a virtual operation among those of its class, the destructor being 1.
///
/// A pointer to a virtual member holds its offset in the table plus 1; a destructor takes two entries.
template <typename Operation>
std::uintptr_t slotOf(Operation operation)
{
    std::uintptr_t offset = 0;
    std::memcpy(&offset, &operation, sizeof(offset));
    return (offset - 1) / sizeof(void*);
}

TEST(Variant, VirtualOperationsKeepTheirOrder)
{
    EXPECT_EQ(slotOf(&ImageVariant::GetDataType), 4U);
    EXPECT_EQ(slotOf(&ImageVariant::SetScaleX), 7U);
    EXPECT_EQ(slotOf(&ImageVariant::SetScaleI), 16U);
    EXPECT_EQ(slotOf(&ImageVariant::SetAttributes), 19U);
    EXPECT_EQ(slotOf(&ImageVariant::GetSize), 22U);
    EXPECT_EQ(slotOf(&ImageVariant::CreateCopy), 25U);
    EXPECT_EQ(slotOf(&ImageVariant::IsMaskSpawned), 32U);
    EXPECT_EQ(slotOf(&ImageVariant::Assign), 34U);
    EXPECT_EQ(slotOf(&ImageVolumeVariant::SetScaleX), 4U);
    EXPECT_EQ(slotOf(&ImageVolumeVariant::SetAttributes), 16U);
    EXPECT_EQ(slotOf(&ImageVolumeVariant::GetDepth), 20U);
    EXPECT_EQ(slotOf(&ImageVolumeVariant::getPlaneSPtr), 23U);
    EXPECT_EQ(slotOf(&ImageVolumeVariant::Assign), 26U);
    EXPECT_EQ(slotOf(&Variant::createCopy), 4U);
    EXPECT_EQ(slotOf(&ImageBufferVariant::createCopy), 4U);
    EXPECT_EQ(slotOf(&ImageBufferVariant::setAllAttributes), 9U);
    EXPECT_EQ(slotOf(&ImageBufferVariant::getFrameConstSPtr), 13U);
    EXPECT_EQ(slotOf(&ImageBufferVariant::HasMatchingFrameSizes), 16U);
    EXPECT_EQ(slotOf(&ImageBufferVariant::Assign), 19U);
}

/// Claims a type that no raster object has.
template <typename Base>
class Odd : public Base
{
public:
    using Base::Base;
    E_DataType GetDataType() const noexcept override { return E_DataType(2); }
};

TEST(Variant, UnsupportedTypesAreRefusedBeforeAnythingElse)
{
    const Odd<Image<int>> oddImage(9, 9, true);
    const Odd<ImageVolume<int>> oddVolume(9U, 9U, 9U, true);
    const Odd<ImageBuffer<int>> oddBuffer(9U, 9U, 1U, 9U, true);
    const Odd<ImageData<int>> oddData(3U, 2U);
    Image<int> image(3, 2, 5, true);
    ImageVolume<int> volume(3U, 2U, 1U, true);
    ImageBuffer<int> buffer(3U, 2U, 1U, 1U, true);
    const QString text = "Unsupported image type";
    expectRaised<RTE::Exception>(
        {{text, [&] { image.Assign(oddImage); }},
         {text, [&] { volume.Assign(oddVolume); }},
         {text, [&] { buffer.Assign(oddBuffer); }},
         {text, [&] { return CreateImageBufferCopyOfOtherType(oddBuffer, buffer); }},
         {text, [&] { return CreateImageBufferCopyOfOtherType(buffer, oddBuffer); }},
         {text, [&] { return CreateImageBufferOfOtherType(oddBuffer, 1, 1, 0, 0, true); }},
         {text, [&] { return ExtractXZImage(oddVolume, 8); }},
         {text, [&] { return ExtractYZImage(oddVolume, 8); }},
         {text, [&] { return ExtractZYImage(oddVolume, 8); }},
         {"Unsupported image data type", [&] { return getImageDataLine(oddData, 2); }}});
    EXPECT_EQ(image(2, 1), 5);
    EXPECT_EQ(buffer.getFrame(0).GetWidth(), 3U);
    EXPECT_TRUE(raises<RTE::OutOfRangeError>("x plane index", [&] { return ExtractYZImage(oddVolume, 9); }));
}

TEST(Variant, FailuresAreLocatedInTheFileOfTheirClass)
{
    Image<int> image(3, 2, 5, true);
    const Image<int> other(2, 2, 5, true);
    const auto small = std::make_shared<Mask>(2, 2);
    const Odd<ImageVolume<int>> oddVolume(9U, 9U, 9U, true);
    ImageVolume<int> volume(3U, 2U, 1U, true);
    ImageBuffer<int> buffer(3U, 2U, 1U, 1U, true);
    const auto viewWith = [&](const std::shared_ptr<Mask>& mask) {
        return Image<int>(image.begin(), image.GetSize(), mask, nullptr, nullptr, nullptr, nullptr, nullptr,
                          nullptr);
    };
    const std::vector<std::pair<QString, std::function<void()>>> calls = {
        {"Image", [&] { viewWith(small); }},
        {"Image", [&] { viewWith(image.GetMaskSPtr()); }},
        {"Image", [&] { image.Assign(Odd<Image<int>>(9, 9, true)); }},
        {"ImageData", [&] { image = other; }},
        {"ImageData", [] { ImageData<int>(static_cast<int*>(nullptr), 1, 1, false); }},
        {"ImageData", [&] { image.GetImageData() /= other.GetImageData(); }},
        {"ImageData", [&] { static_cast<void>(CastImageDataTo<float>(other.GetImageData())); }},
        {"ImageVolume", [] { ImageVolume<int>(3U, 2U, 0U, true); }},
        {"ImageVolume", [&] { static_cast<void>(volume.getPlane(1)); }},
        {"ImageVolume", [&] { volume.Assign(oddVolume); }},
        {"ImageBuffer", [] { ImageBuffer<int>(3U, 2U, 1U, 0U, true); }},
        {"ImageBuffer", [&] { buffer.AppendImageVolume(oddVolume); }},
        {"ImageBufferVariant", [&] { buffer.setAllAttributes(GlobalAndFrameAttributes()); }},
        {"ImageExtraction", [&] { return ExtractXZImage(oddVolume, 9); }},
        {"ImageExtraction", [&] { return ExtractXZImage(oddVolume, 8); }}};
    for (const auto& [file, call] : calls) {
        EXPECT_EQ(locationOf(call), "Core/DataObjects/" + file);
    }
}

} // namespace
