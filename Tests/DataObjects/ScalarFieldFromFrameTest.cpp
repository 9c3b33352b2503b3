// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ScalarFieldFromFrame.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/Buffer/FrameBuilder.h"
#include "Core/Buffer/LazyPlane.h"
#include "Core/DataObjects/ImageDataFromBuffer.h"
#include "Core/DataObjects/ScalarField.h"
#include "Core/DataObjects/ScalarFieldToFrame.h"
#include "Tests/DataObjects/Fields.h"
#include "Tests/Support/AllTypes.h"
#include "Tests/Support/ImageFrames.h"
#include "Tests/Support/Raises.h"

#include <algorithm>

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using BufferApi::I_Frame;
using RTE::VerificationFailed;
using testing::Each;
using testing::ElementsAre;
using FramePointer = std::unique_ptr<I_Frame>;

/// 3 × 2 with "a" of T, whose planes are filled with z + 1.
template <typename T>
FramePointer frameWithA(unsigned int depth)
{
    FramePointer frame(BufferApi::CreateImageFrame(BufferApi::DT_WORD, 3, 2, depth));
    for (unsigned int z = 0; z < depth; ++z) {
        const ImageData<T> pixels(3, 2, static_cast<T>(z + 1));
        CopyScalarFieldToFrameTypedScalarT(ScalarField<T>(pixels, kelvin), *frame, "a", z);
    }
    return frame;
}

class Failing final : public BufferApi::PlaneSource
{
public:
    explicit Failing(bool fails) : m_fails(fails) {}
    void read(void* destination, unsigned long long bytes) const override
    {
        if (m_fails) {
            RTE::raise(RTE::FileReadError("no file"));
        }
        std::fill_n(static_cast<unsigned char*>(destination), bytes, static_cast<unsigned char>(7));
    }

private:
    bool m_fails;
};

BufferApi::ComponentParts lazyScalar(const std::string& name, bool fails, unsigned int width = 3)
{
    BufferApi::ComponentParts parts{"TS:" + name, BufferApi::DT_BYTE, {}, kelvin};
    parts.planes.push_back(
        BufferApi::createLazyPlane(BufferApi::DT_BYTE, width, 2, std::make_shared<Failing>(fails)));
    return parts;
}

TEST(ScalarFieldFromFrame, ACopyOfEachTypeAndPlane)
{
    forAllTypes([]<typename T>(PixelTypes::Tag<T>) {
        auto frame = frameWithA<T>(2);
        const auto field = GetScalarField(*frame, "a", 1);
        frame.reset();
        EXPECT_THAT(CastScalarFieldTo<T>(*field), Each(T{2}));
        EXPECT_TRUE(field->GetData().HasOwnerShip());
        EXPECT_EQ(field->GetScaleI(), kelvin);
    });
}

TEST(ScalarFieldFromFrame, WhatIsNotThere)
{
    const auto frame = frameWithA<float>(2);
    frame->AddComponent("TS:", BufferApi::DT_FLOAT, {});
    frame->AddComponent("TS:colour", BufferApi::DT_RGB, {});
    EXPECT_TRUE(ContainsScalarField(*frame, "a"));
    EXPECT_TRUE(ContainsScalarField(*frame, "colour"));
    EXPECT_FALSE(ContainsScalarField(*frame, ""));
    EXPECT_FALSE(ContainsScalarField(*frame, "TS:a"));

    const auto refuses = [&](const char* name, unsigned int plane, const QString& field,
                             const QString& pixels) {
        expectRaised(
            {{field, [&] { return GetScalarField(*frame, name, plane); }},
             {pixels, [&] { return GetImageDataFromTypedScalarT<float>(*frame, name, plane); }},
             {pixels, [&] { return GetImageDataFromTypedScalarT<float>(std::move(*frame), name, plane); }}});
    };
    refuses("\xe4%1", 0, "No scalar field of name '\u00e4%1' found.",
            "No typed scalar of name '\u00e4%1' found.");
    refuses("", 0, "No scalar field of name '' found.", "No typed scalar of name '' found.");
    refuses("a", 2, "No scalar field of name 'a' found for given plane.", "Invalid plane index 2");
    EXPECT_TRUE(raises<RTE::Exception>("RGB scalar field is not supported.",
                                       [&] { return GetScalarField(*frame, "colour", 0); }));
    EXPECT_TRUE(raises("Pixel-plane of given frame has not the required type",
                       [&] { return GetImageDataFromTypedScalarT<int>(*frame, "a", 0); }));
}

TEST(ScalarFieldFromFrame, PixelsByViewOrByTakingThem)
{
    const auto frame = frameWithA<int>(2);
    auto view = GetImageDataFromTypedScalarT<int>(*frame, "a", 1);
    EXPECT_FALSE(view.HasOwnerShip());
    const auto owner = GetImageDataFromTypedScalarT<int>(std::move(*frame), "a", 1);
    EXPECT_EQ(owner.GetRawPointer(), view.GetRawPointer());
    EXPECT_TRUE(owner.HasOwnerShip());
    EXPECT_TRUE(
        raises("data-pointer is null", [&] { return GetImageDataFromTypedScalarT<int>(*frame, "a", 1); }));
    EXPECT_THAT(valuesOf(GetImageDataFromTypedScalarT<int>(*frame, "a", 0)), Each(1));
}

TEST(ScalarFieldFromFrame, MovingTakesTheMemoryOfOnePlane)
{
    auto frame = frameWithA<float>(2);
    frame->AddComponent("TS:", BufferApi::DT_RGB, {});
    CopyScalarFieldToFrameTypedScalar(ScalarField<double>(ImageData<double>(3, 2, 5.0), kelvin), *frame, "b",
                                      1);
    const float* const memory = GetImageDataFromTypedScalarT<float>(*frame, "a", 1).begin();
    ScalarFields fields(3, 2);
    fields.Add("a");
    fields.Add("c");
    MoveScalarFieldFromFrame(fields, std::move(*frame), 1);
    EXPECT_THAT(valuesOf(GetImageDataFromTypedScalarT<float>(*frame, "a", 0)), Each(1.0F));
    frame.reset();
    EXPECT_THAT(fields.GetNames(), ElementsAre("a", "b", "c"));
    EXPECT_EQ(CastScalarFieldTo<float>(*fields.Get("a")).begin(), memory);
    EXPECT_TRUE(fields.Get("a")->GetData().HasOwnerShip());
    fields.Get("a")->SetScaleI(Zt::LinearScale(Zt::ScalePreset::X));
    EXPECT_THAT(CastScalarFieldTo<double>(*fields.Get("b")), Each(5.0));
    EXPECT_EQ(fields.Get("b")->GetScaleI(), kelvin);
}

TEST(ScalarFieldFromFrame, MovingFailsBeforeAnythingMoves)
{
    ScalarFields fields(3, 2);
    ScalarFields larger(3, 3);
    const auto frame = frameWithA<float>(1);
    const auto colour = frameWithA<float>(1);
    colour->AddComponent("TS:b", BufferApi::DT_RGB, {});
    const auto unreadable =
        frameOfParts(BufferApi::FrameKind::Image, 3, 2, lazyScalar("a", false), lazyScalar("b", true));
    const auto move = [](ScalarFields& to, I_Frame& from, unsigned int plane) {
        return [&to, &from, plane] { MoveScalarFieldFromFrame(to, std::move(from), plane); };
    };
    const auto released = frameWithA<float>(1);
    released->AddComponent("TS:b", BufferApi::DT_BYTE, {});
    delete[] static_cast<unsigned char*>(released->GetComponent("TS:b")->GetPlane(0)->ReleaseData());
    expectRaised({{"Invalid plane index 1", move(fields, *frame, 1)},
                  {"data-pointer is null", move(fields, *released, 0)},
                  {"Source scalar field has wrong size.", move(larger, *frame, 0)}});
    EXPECT_TRUE(raises<RTE::Exception>("RGB scalar field is not supported.", move(fields, *colour, 0)));
    EXPECT_TRUE(raises<RTE::FileReadError>("no file", move(fields, *unreadable, 0)));
    EXPECT_TRUE(fields.empty() && larger.empty());
    for (const auto* const kept : {frame.get(), colour.get(), unreadable.get(), released.get()}) {
        EXPECT_NE(memoryOf(*kept, "TS:a", 0), nullptr);
    }
}

TEST(ScalarFieldFromFrame, FilesAreReadWhenTheyMustBe)
{
    const auto frame =
        frameOfParts(BufferApi::FrameKind::Image, 3, 2, lazyScalar("a", false), lazyScalar("b", false));
    const auto& plane = *frame->GetComponent("TS:a")->GetPlane(0);
    EXPECT_THAT(CastScalarFieldTo<unsigned char>(*GetScalarField(*frame, "a", 0)), Each(7));
    EXPECT_TRUE(BufferApi::isUnread(plane));
    const auto fields = GetScalarFields(*frame, 0);
    EXPECT_FALSE(BufferApi::isUnread(plane));
    EXPECT_THAT(CastScalarFieldTo<unsigned char>(*fields->Get("b")), Each(7));

    const auto unreadable =
        frameOfParts(BufferApi::FrameKind::Image, 3, 2, lazyScalar("a", false), lazyScalar("b", true));
    EXPECT_TRUE(raises<RTE::FileReadError>("no file", [&] { return GetScalarFields(*unreadable, 0); }));
    const auto otherSize =
        frameOfParts(BufferApi::FrameKind::Image, 3, 2, lazyScalar("a", false), lazyScalar("b", false, 1));
    EXPECT_TRUE(
        raises("Source scalar field has wrong size.", [&] { return GetScalarFields(*otherSize, 0); }));
    EXPECT_EQ(GetScalarField(*otherSize, "b", 0)->GetWidth(), 1U);
}

} // namespace
