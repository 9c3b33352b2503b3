// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ScalarFieldToFrame.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/Buffer/FrameBuilder.h"
#include "Core/DataObjects/ImageDataFromBuffer.h"
#include "Core/DataObjects/ImageToBuffer.h"
#include "Core/DataObjects/ImageVolume.h"
#include "Core/DataObjects/ScalarFieldFromFrame.h"
#include "Tests/DataObjects/Fields.h"
#include "Tests/Support/AllTypes.h"
#include "Tests/Support/ImageFrames.h"
#include "Tests/Support/Raises.h"

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using BufferApi::I_FrameImage;
using RTE::VerificationFailed;
using testing::Each;
using testing::ElementsAre;
using FramePointer = std::unique_ptr<I_FrameImage>;

FramePointer newFrame(unsigned int depth)
{
    return FramePointer(BufferApi::CreateImageFrame(BufferApi::DT_WORD, 3, 2, depth));
}

template <typename T>
ImageData<T> view(I_FrameImage& frame, const std::string& name, unsigned int z = 0)
{
    return GetImageDataFromTypedScalarT<T>(frame, name, z);
}

TEST(ScalarFieldToFrame, CopiesEachTypeIntoOnePlane)
{
    forAllTypes([]<typename T>(PixelTypes::Tag<T>) {
        const auto frame = newFrame(2);
        CopyScalarFieldToFrameTypedScalar(filled(T{4}), *frame, "a", 1);
        EXPECT_THAT(valuesOf(view<T>(*frame, "a", 0)), Each(T{0}));
        EXPECT_THAT(valuesOf(view<T>(*frame, "a", 1)), Each(T{4}));
        EXPECT_EQ(GetScalarField(*frame, "a", 0)->GetScaleI(), kelvin);

        const auto kept = view<T>(*frame, "a", 1);
        CopyImageDataToTypedScalar(ImageData<T>(3, 2, T{5}), *frame, "a", 1);
        EXPECT_THAT(valuesOf(kept), Each(T{5}));
        CopyImageToTypedScalar(Image<T>(ImageData<T>(3, 2, T{6}), Mask(3, 2, true)), *frame, "b", 0);
        EXPECT_THAT(valuesOf(view<T>(*frame, "b", 0)), Each(T{6}));
        EXPECT_EQ(GetScalarField(*frame, "b", 0)->GetScaleI(), plain);
    });
}

TEST(ScalarFieldToFrame, MovesArraysThatAreOwned)
{
    forAllTypes([]<typename T>(PixelTypes::Tag<T>) {
        const auto frame = newFrame(1);
        ImageData<T> data(3, 2, T{4});
        const T* const memory = data.begin();
        MoveScalarFieldToFrame(data, *frame, "\u00e4");
        EXPECT_EQ(data.GetRawPointer(), nullptr);
        EXPECT_EQ(view<T>(*frame, "\xe4").begin(), memory);

        ImageData<T> second(3, 2, T{5});
        MoveScalarFieldToFrame(second, *frame, "\u00e4");
        EXPECT_EQ(view<T>(*frame, "\xe4").begin(), memory);
        EXPECT_THAT(valuesOf(view<T>(*frame, "\xe4")), Each(T{5}));
        EXPECT_THAT(valuesOf(second), Each(T{5}));

        auto foreign = view<T>(*frame, "\xe4");
        MoveScalarFieldToFrame(foreign, *frame, "copy");
        EXPECT_NE(view<T>(*frame, "copy").begin(), memory);
        EXPECT_EQ(foreign.begin(), memory);
    });
    const auto volume = newFrame(2);
    ImageData<int> data(3, 2, 4);
    MoveScalarFieldToFrameT(data, *volume, "a");
    EXPECT_THAT(valuesOf(view<int>(*volume, "a", 0)), Each(4));
    EXPECT_THAT(valuesOf(view<int>(*volume, "a", 1)), Each(0));
    EXPECT_THAT(valuesOf(data), Each(4));
}

TEST(ScalarFieldToFrame, FailuresComeInOrderAndLeaveTheFrame)
{
    const auto frame = newFrame(1);
    ImageData<float> larger(4, 2, 1.0F);
    ImageData<float> released(3, 2, 1.0F);
    delete[] released.ReleaseRawPointer();
    const Image<float> image(larger, Mask(4, 2, true));
    const ScalarField<float> field(larger, kelvin);
    const QString empty = "Empty scalar field names are not allowed.";
    const QString otherImage = "Size of image and image plane must be equal.";
    const QString otherField = "Size of TS and plane must be equal.";
    const QString noPlane = "Invalid plane index 1";
    const std::vector<std::pair<QString, std::function<void()>>> failures{
        {empty, [&] { CopyImageDataToTypedScalar(larger, *frame, "", 1); }},
        {noPlane, [&] { CopyImageDataToTypedScalar(larger, *frame, "a", 1); }},
        {otherImage, [&] { CopyImageDataToTypedScalar(larger, *frame, "a", 0); }},
        {otherImage, [&] { CopyImageToTypedScalar(image, *frame, "a", 0); }},
        {"data-pointer is null", [&] { CopyImageDataToTypedScalar(released, *frame, "a", 0); }},
        {empty, [&] { CopyScalarFieldToFrameTypedScalar(field, *frame, "", 1); }},
        {noPlane, [&] { CopyScalarFieldToFrameTypedScalar(field, *frame, "a", 1); }},
        {otherField, [&] { CopyScalarFieldToFrameTypedScalar(field, *frame, "a", 0); }},
        {empty, [&] { MoveScalarFieldToFrame(larger, *frame, ""); }},
        {otherField, [&] { MoveScalarFieldToFrame(larger, *frame, "a"); }},
        {"data-pointer is null", [&] { MoveScalarFieldToFrame(released, *frame, "a"); }},
    };
    for (const auto& [text, call] : failures) {
        EXPECT_TRUE(raises(text, call));
    }
    EXPECT_TRUE(raises<RTE::Exception>("Unsupported scalar field type", [&] {
        CopyScalarFieldToFrameTypedScalar(StrangeField(3, 2), *frame, "a", 0);
    }));
    EXPECT_EQ(frame->GetComponentCount(), 1U);
    EXPECT_THAT(valuesOf(larger), Each(1.0F));
}

TEST(ScalarFieldToFrame, PixelsAloneFailInTheFilesOfImages)
{
    const auto frame = newFrame(1);
    const ImageData<float> wide(4, 2, 1.0F);
    EXPECT_EQ(locationOf([&] { CopyImageDataToTypedScalar(wide, *frame, "a", 0); }),
              "Core/DataObjects/ImageToBuffer");
    EXPECT_EQ(locationOf([&] { CopyImageDataToTypedScalarT(wide, *frame, "a", 1); }),
              "Core/DataObjects/ImageToBuffer");
    EXPECT_EQ(locationOf([&] { return view<float>(*frame, "a"); }), "Core/DataObjects/ImageDataFromBuffer");
}

TEST(ScalarFieldToFrame, APlaneOutOfAFileNeedNotHaveTheSizeOfItsFrame)
{
    const auto frame =
        frameOfParts(BufferApi::FrameKind::Image, 3, 2, onePlane("TS:a", BufferApi::DT_FLOAT, 1, 2));
    ImageData<float> larger(3, 2, 1.0F);
    EXPECT_TRUE(
        raises("Size of TS and plane must be equal.", [&] { MoveScalarFieldToFrame(larger, *frame, "a"); }));
    CopyScalarFieldToFrameTypedScalar(filled(1, 2, 2.0F), *frame, "a", 0);
    EXPECT_THAT(CastScalarFieldTo<float>(*GetScalarField(*frame, "a", 0)), Each(2.0F));
    CopyScalarFieldToFrameTypedScalar(filled(3), *frame, "a", 0);
    EXPECT_THAT(CastScalarFieldTo<int>(*GetScalarField(*frame, "a", 0)), Each(3));
}

TEST(ScalarFieldToFrame, MovesACollection)
{
    auto frame = newFrame(1);
    ScalarFields fields(3, 2);
    fields.Add("a", filled(2.0F));
    fields.Add("b", filled<unsigned short>(3));
    const float* const memory = CastScalarFieldTo<float>(*fields.Get("a")).begin();
    MoveScalarFieldsToFrame(std::move(fields), *frame);
    EXPECT_TRUE(fields.empty());
    EXPECT_EQ(view<float>(*frame, "a").begin(), memory);
    EXPECT_THAT(valuesOf(view<unsigned short>(*frame, "b")), Each(3));
    EXPECT_EQ(GetScalarField(*frame, "b", 0)->GetScaleI(), kelvin);

    const auto copy = newFrame(1);
    MoveScalarFieldsToFrame(std::move(*GetScalarFields(*frame, 0)), *copy);
    MoveScalarFieldsToFrame(std::move(*GetScalarFields(*frame, 0)), *frame);
    EXPECT_EQ(view<float>(*frame, "a").begin(), memory);
    frame.reset();
    EXPECT_THAT(valuesOf(view<float>(*copy, "a")), Each(2.0F));
    EXPECT_EQ(GetScalarField(*copy, "a", 0)->GetScaleI(), kelvin);

    ScalarFields other(2, 3);
    MoveScalarFieldsToFrame(std::move(other), *copy);
    other.Add("a");
    EXPECT_TRUE(raises("Size of TS and plane must be equal.",
                       [&] { MoveScalarFieldsToFrame(std::move(other), *copy); }));
    EXPECT_TRUE(other.Contains("a"));
}

ImageVolume<int> volumeWithA()
{
    ImageVolume<int> volume(3, 2, 2, 0);
    for (unsigned int z = 0; z < 2; ++z) {
        volume.getPlane(z).GetScalarFields().Add("a", filled(static_cast<float>(z + 1)));
    }
    return volume;
}

const float* memoryOf(ImageVolume<int>& volume, unsigned int z)
{
    return CastScalarFieldTo<float>(*volume.getPlane(z).GetScalarFields().Get("a")).begin();
}

TEST(ScalarFieldToFrame, MovesTheFieldsOfAllPlanes)
{
    auto volume = volumeWithA();
    const auto frame = newFrame(2);
    const float* const memory = memoryOf(volume, 1);
    MoveScalarFieldsFromVolumeToFrame(volume, *frame);
    EXPECT_EQ(view<float>(*frame, "a", 1).begin(), memory);
    EXPECT_THAT(valuesOf(view<float>(*frame, "a", 0)), Each(1.0F));
    EXPECT_EQ(GetScalarField(*frame, "a", 0)->GetScaleI(), kelvin);
    EXPECT_TRUE(volume.getPlane(1).GetScalarFields().empty());

    auto mixed = volumeWithA();
    auto foreign = view<float>(*frame, "a", 1);
    mixed.getPlane(1).GetScalarFields().Add(
        "a", std::make_unique<ScalarField<float>>(3, 2, foreign.begin(), false, plain));
    const auto copy = newFrame(2);
    MoveScalarFieldsFromVolumeToFrame(mixed, *copy);
    EXPECT_NE(view<float>(*copy, "a", 1).begin(), memory);
    EXPECT_THAT(valuesOf(view<float>(*copy, "a", 1)), Each(2.0F));
    EXPECT_EQ(GetScalarField(*copy, "a", 1)->GetScaleI(), kelvin);
}

TEST(ScalarFieldToFrame, AFieldThatServesTwoPlanesIsCopied)
{
    auto volume = volumeWithA();
    volume[1] = volume[0];
    const auto frame = newFrame(2);
    MoveScalarFieldsFromVolumeToFrame(volume, *frame);
    EXPECT_THAT(valuesOf(view<float>(*frame, "a", 0)), Each(1.0F));
    EXPECT_THAT(valuesOf(view<float>(*frame, "a", 1)), Each(1.0F));
}

TEST(ScalarFieldToFrame, VolumesFailBeforeAnythingMoves)
{
    auto volume = volumeWithA();
    const auto frame = newFrame(2);
    const auto expectRefused = [&](const QString& text, I_FrameImage& target) {
        const float* const memory = memoryOf(volume, 0);
        EXPECT_TRUE(raises(text, [&] { MoveScalarFieldsFromVolumeToFrame(volume, target); }));
        EXPECT_EQ(memoryOf(volume, 0), memory);
        EXPECT_EQ(target.GetComponentCount(), 1U);
    };
    expectRefused("Image volume field and image frame have different depth", *newFrame(1));
    auto& second = volume.getPlane(1).GetScalarFields();
    second.Add(BufferApi::DT_DOUBLE, "a", nullptr);
    expectRefused("bad scalar field cast", *frame);
    second.Remove("a");
    expectRefused("Scalar field 'a' is not existing.", *frame);
    expectRefused("Size of TS and plane must be equal.", *TestSupport::newFrame(BufferApi::DT_WORD, 4, 2, 2));
}

} // namespace
