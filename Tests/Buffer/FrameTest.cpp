// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Buffer.h"
#include "Core/Buffer/FrameBuilder.h"
#include "Core/Common/Array.h"
#include "Tests/Support/Allocations.h"
#include "Tests/Support/Frames.h"
#include "Tests/Support/Raises.h"

#include <functional>

namespace
{

using namespace BufferApi;
using TestSupport::raises;

const Zt::LinearScale metres(0.5, 1.0, QStringLiteral("m/s"), QStringLiteral("Velocity"));

TEST(Frame, AddsComponentsOverItsOwnAndOverGivenMemory)
{
    const std::unique_ptr<I_Frame> frame(CreateImageFrame(DT_WORD, 3, 2, 2));
    const std::vector<void*> arrays{RTE::newArray<double>(6), RTE::newArray<double>(6)};
    EXPECT_EQ(frame->AddComponent("given", DT_DOUBLE, arrays), 1U);
    EXPECT_EQ(frame->AddComponent("own", DT_BYTE, {}), 2U);
    EXPECT_EQ(frame->GetComponentIndex("own"), 2U);
    EXPECT_EQ(frame->GetPlane(1, 1)->GetData(), arrays[1]);
    EXPECT_EQ(frame->GetPlane(1, 2), nullptr);
    EXPECT_EQ(frame->GetPlane(3, 0), nullptr);

    frame->RemoveComponent(1);
    EXPECT_EQ(frame->GetComponentIndex("own"), 1U);
    EXPECT_EQ(frame->GetComponentIndex("given"), 0xFFFFFFFF);
    EXPECT_EQ(frame->GetComponent("given"), nullptr);
    EXPECT_EQ(frame->GetComponent(0xFFFFFFFFU), nullptr);
    EXPECT_TRUE(raises<RTE::OutOfRangeError>("index", [&] { frame->RemoveComponent(2); }));
}

TEST(Frame, LeavesGivenMemoryWithTheCallerWhenItRefuses)
{
    const std::unique_ptr<I_Frame> frame(CreateImageFrame(DT_WORD, 3, 2, 2));
    const std::unique_ptr<unsigned char[]> a(RTE::newArray<unsigned char>(6));
    const std::unique_ptr<unsigned char[]> b(RTE::newArray<unsigned char>(6));
    struct Case
    {
        const char* text;
        std::string name;
        E_DataType type;
        std::vector<void*> arrays;
    };
    const std::vector<Case> cases{
        {"Empty name", "", DT_BYTE, {a.get(), b.get()}},
        {"Frame already has a component 'PIXEL'", "PIXEL", DT_BYTE, {a.get(), b.get()}},
        {"Unsupported data type", "x", DT_UNKNOWN, {a.get(), b.get()}},
        {"Component needs one plane for each z", "x", DT_BYTE, {a.get()}},
        {"Plane memory is NULL", "x", DT_BYTE, {a.get(), nullptr}},
        {"Plane memory is given twice", "x", DT_BYTE, {a.get(), a.get()}},
        {"Plane memory belongs to the frame already",
         "x",
         DT_WORD,
         {a.get(), frame->GetPlane(0, 1)->GetData()}}};
    for (const Case& c : cases) {
        EXPECT_TRUE(raises<RTE::InvalidArgumentError>(
            c.text, [&] { frame->AddComponent(c.name, c.type, c.arrays); }));
    }
    EXPECT_TRUE(raises<RTE::InvalidArgumentError>("Component needs one plane for each z",
                                                  [&] { frame->AddMask({a.get()}); }));
    EXPECT_EQ(frame->GetComponentCount(), 1U);
    EXPECT_FALSE(frame->HasMask());
}

TEST(Frame, StaysAsItWasWhenThereIsNoMemory)
{
    const auto addMask = [](I_Frame& frame, void* array) { frame.AddMask({array}); };
    const auto addComponent = [](I_Frame& frame, void* array) { frame.AddComponent("x", DT_BYTE, {array}); };
    for (const auto& add : {std::function<void(I_Frame&, void*)>(addMask), {addComponent}}) {
        for (std::size_t n = 1;; ++n) {
            const std::unique_ptr<I_Frame> frame(CreateImageFrame(DT_WORD, 3, 2, 1));
            std::unique_ptr<unsigned char[]> array(RTE::newArray<unsigned char>(6));
            if (TestSupport::succeedsWithoutBlock(n, [&] { add(*frame, array.get()); })) {
                EXPECT_EQ(frame->GetPlane(1, 0)->GetData(), array.release());
                break;
            }
            EXPECT_EQ(frame->GetComponentCount(), 1U);
            EXPECT_FALSE(frame->HasMask());
            EXPECT_EQ(frame->GetComponent("x"), nullptr);
        }
    }
    const std::unique_ptr<I_Frame> frame(CreateImageFrame(DT_WORD, 3, 2, 1));
    frame->AddComponent("TS:a", DT_BYTE, {});
    frame->AddMask({});
    EXPECT_EQ(TestSupport::allocationsDuring([&] { frame->RemoveComponent(0); }), 0U);
    EXPECT_EQ(TestSupport::allocationsDuring([&] { frame->ClearTypedScalars(); }), 0U);
    EXPECT_EQ(frame->GetComponentIndex(I_Frame::COMPONENT_MASK), 0U);
}

TEST(Frame, MakesAnAllValidMaskKeepsItAndReplacesItByGivenMemory)
{
    const std::unique_ptr<I_FrameVector2C> owner(CreateVectorFrame2C(3, 2, 1, 1));
    I_Frame& frame = *owner;
    frame.AddMask({});
    EXPECT_TRUE(frame.HasMask());
    const unsigned int index = frame.GetComponentIndex(I_Frame::COMPONENT_MASK);
    auto* mask = static_cast<unsigned char*>(frame.GetPlane(index, 0)->GetData());
    EXPECT_EQ(std::vector<unsigned char>(mask, mask + 6), std::vector<unsigned char>(6, 1));
    mask[2] = 0;
    frame.AddMask({});
    EXPECT_EQ(static_cast<unsigned char*>(frame.GetPlane(index, 0)->GetData())[2], 0);
    auto* given = RTE::newArray<bool>(6);
    frame.AddMask({given});
    EXPECT_EQ(frame.GetPlane(index, 0)->GetData(), given);
    EXPECT_EQ(frame.GetComponentIndex(I_Frame::COMPONENT_MASK), index);
}

TEST(Frame, TakesItsMaskArrayBackOnlyOnceItWasReleased)
{
    const std::unique_ptr<I_Frame> frame(CreateImageFrame(DT_WORD, 3, 2, 1));
    frame->AddMask({});
    I_PlaneBase* plane = frame->GetComponent(I_Frame::COMPONENT_MASK)->GetPlane(0);
    static_cast<unsigned char*>(plane->GetData())[5] = 7;
    EXPECT_TRUE(raises<RTE::InvalidArgumentError>("Plane memory belongs to the frame already",
                                                  [&] { frame->AddMask({plane->GetData()}); }));
    frame->AddMask({plane->ReleaseData()});
    plane = frame->GetComponent(I_Frame::COMPONENT_MASK)->GetPlane(0);
    EXPECT_EQ(static_cast<unsigned char*>(plane->GetData())[5], 7);
}

TEST(Frame, SharesItsIntensityScaleWithThePixels)
{
    const std::unique_ptr<I_FrameImage> frame(CreateImageFrame(DT_WORD, 3, 2, 1));
    I_Component* pixels = frame->GetComponent(I_FrameImage::COMPONENT_PIXEL);
    EXPECT_EQ(pixels->GetScale(), Zt::LinearScale(Zt::ScalePreset::I));
    frame->SetScaleI(metres);
    EXPECT_EQ(pixels->GetScale(), metres);
    pixels->SetScale(Zt::LinearScale(Zt::ScalePreset::Y));
    EXPECT_EQ(frame->GetScaleI(), Zt::LinearScale(Zt::ScalePreset::Y));
    EXPECT_FALSE(pixels->HasOwnScale());

    frame->AddMask({});
    EXPECT_EQ(frame->GetComponent(I_Frame::COMPONENT_MASK)->GetScale(), Zt::LinearScale(1.0, 0.0, {}, {}));
}

TEST(Frame, GivesItsIntensityScaleToVectorComponentsWithoutTheirOwn)
{
    const std::unique_ptr<I_FrameVector3C> owner(CreateVectorFrame3C(3, 2, 1, 2));
    I_FrameVector& frame = *owner;
    EXPECT_EQ(frame.GetScaleI(), Zt::LinearScale(1.0, 0.0, QStringLiteral("pixel"), {}));
    I_Component* u1 = frame.GetComponent(I_FrameVector::COMPONENT_U, 1);
    I_Component* w = frame.GetComponent(I_FrameVector::COMPONENT_W, 0);
    w->SetScale(Zt::LinearScale(Zt::ScalePreset::Z));
    frame.SetScaleI(metres);
    EXPECT_EQ(u1->GetScale(), metres);
    EXPECT_FALSE(u1->HasOwnScale());
    EXPECT_EQ(w->GetScale(), Zt::LinearScale(Zt::ScalePreset::Z));
    EXPECT_TRUE(w->HasOwnScale());
    EXPECT_EQ(frame.GetComponent(I_FrameVector::COMPONENT_ENABLED)->GetScale().getUnit(), QString());
}

TEST(Frame, ClearsTypedScalarsAlone)
{
    const std::unique_ptr<I_Frame> frame(CreateImageFrame(DT_WORD, 3, 2, 2));
    for (const char* name : {"TS:a", "TSb", "TS:", "ts:c"}) {
        frame->AddComponent(name, DT_BYTE, {});
    }
    frame->ClearTypedScalars();
    EXPECT_EQ(frame->GetComponentCount(), 3U);
    EXPECT_EQ(frame->GetComponent(1)->GetName(), "TSb");
    EXPECT_EQ(frame->GetComponent(2)->GetName(), "ts:c");
}

TEST(Frame, HasNoTypeWithoutItsMainComponent)
{
    const std::unique_ptr<I_FrameImage> frame(CreateImageFrame(DT_WORD, 3, 2, 1));
    frame->RemoveComponent(0);
    EXPECT_EQ(frame->GetDataType(), DT_UNKNOWN);
    frame->AddComponent(I_FrameImage::COMPONENT_PIXEL, DT_FLOAT, {});
    EXPECT_EQ(frame->GetDataType(), DT_FLOAT);
    EXPECT_EQ(frame->GetComponent(0)->GetScale(), frame->GetScaleI());
}

std::vector<ComponentParts> partsOf(const I_Frame& frame)
{
    std::vector<ComponentParts> parts;
    for (unsigned int i = 0; i < frame.GetComponentCount(); ++i) {
        const I_Component& component = *frame.GetComponent(i);
        ComponentParts& part = parts.emplace_back();
        part.name = component.GetName();
        part.type = component.GetDataType();
        for (unsigned int z = 0; z < component.GetPlaneCount(); ++z) {
            const I_PlaneBase& plane = *component.GetPlane(z);
            part.planes.emplace_back(CreatePlane(part.type, plane.GetWidth(), plane.GetHeight()));
            std::memcpy(part.planes.back()->GetData(), plane.GetData(),
                        plane.GetWidth() * plane.GetHeight() * GetDataTypeSize(part.type));
        }
        if (component.HasOwnScale()) {
            part.scale = component.GetScale();
        }
    }
    return parts;
}

TEST(BuildFrame, MakesAnEqualFrameOfTheSameParts)
{
    std::vector<std::unique_ptr<I_Frame>> frames;
    frames.emplace_back(CreateImageFrame(DT_BYTE, 3, 2, 2));
    frames.emplace_back(CreateImageFrame(DT_RGB, 3, 2, 1));
    frames.emplace_back(CreateVectorFrame2C(3, 2, 2, 1));
    frames.emplace_back(CreateVectorFrame3C(3, 2, 1, 12));
    for (const auto& frame : frames) {
        frame->AddMask({});
        frame->GetComponent(frame->GetComponentCount() / 2)->SetScale(frame->GetScaleX());
        const auto copy = buildFrame(frameShape(*frame), partsOf(*frame));
        copy->SetScaleI(frame->GetScaleI());
        EXPECT_TRUE(TestSupport::framesEqual(*frame, *copy));
    }
}

TEST(BuildFrame, RefusesPartsThatDoNotFit)
{
    const FrameShape shape{FrameKind::Image, 3, 2, 2, 1};
    const auto build = [&](const std::function<void(ComponentParts&)>& spoil) {
        std::vector<ComponentParts> parts(1);
        parts[0].name = "PIXEL";
        parts[0].type = DT_WORD;
        parts[0].planes.emplace_back(CreatePlane(DT_WORD, 3, 2));
        parts[0].planes.emplace_back(CreatePlane(DT_WORD, 3, 2));
        spoil(parts[0]);
        static_cast<void>(buildFrame(shape, std::move(parts)));
    };
    build([](ComponentParts&) {});
    const std::vector<std::function<void(ComponentParts&)>> spoilers{
        [](ComponentParts& parts) { parts.planes.pop_back(); },
        [](ComponentParts& parts) { parts.planes[1].reset(); },
        [](ComponentParts& parts) { parts.planes[1].reset(CreatePlane(DT_BYTE, 3, 2)); },
        [](ComponentParts& parts) { parts.planes[1].reset(CreatePlane(DT_WORD, 2, 3)); },
        [](ComponentParts& parts) { parts.type = DT_FLOAT; }};
    for (const auto& spoil : spoilers) {
        EXPECT_TRUE(raises<RTE::InvalidArgumentError>("Planes of component 'PIXEL' do not fit",
                                                      [&] { build(spoil); }));
    }
    EXPECT_TRUE(raises<RTE::InvalidArgumentError>(
        "Empty name", [&] { build([](ComponentParts& parts) { parts.name.clear(); }); }));
}

TEST(VectorComponentNames, AreThoseOfTheFramesChoices)
{
    const FrameShape shape{FrameKind::Vector2C, 3, 2, 1, 11};
    EXPECT_EQ(choiceComponentName("V", 10), "V10");
    for (const char* name : {"U", "V", "U1", "V10"}) {
        EXPECT_TRUE(isVectorComponent(shape, name)) << name;
    }
    for (const char* name : {"", "W", "U0", "U01", "U11", "U1x", "u", "PIXEL", "U99999999999"}) {
        EXPECT_FALSE(isVectorComponent(shape, name)) << name;
    }
}

} // namespace
