// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/BufferLibDataAccess.h"

#include "Core/Buffer/BufferApi.h"
#include "Tests/Support/Raises.h"

namespace
{

using namespace TestSupport;
using namespace DataObjects::Private;

TEST(GetPlaneData, ChecksPlaneThenType)
{
    const std::unique_ptr<BufferApi::I_FrameImage> owner(
        BufferApi::CreateImageFrame(BufferApi::DT_WORD, 3, 2, 2));
    const BufferApi::I_Frame& frame = *owner;
    const BufferApi::I_Component& pixels = *frame.GetComponent(0);
    EXPECT_EQ(GetPlaneData<unsigned short>(frame, 1), frame.GetPlane(0, 1)->GetData());
    EXPECT_EQ(GetPlaneData<unsigned short>(pixels, 1), frame.GetPlane(0, 1)->GetData());

    const std::vector<std::pair<const char*, std::function<void()>>> failures{
        {"Z-Plane for given frame not valid", [&] { return GetPlaneData<float>(frame, 2); }},
        {"Pixel-plane of given frame has not the required type",
         [&] { return GetPlaneData<float>(frame, 1); }},
        {"Plane for given frame not valid", [&] { return GetPlaneData<float>(pixels, 2); }},
        {"Plane for given frame has not the required type",
         [&] { return GetPlaneData<BufferApi::RgbQuad>(pixels, 1); }}};
    for (const auto& [text, call] : failures) {
        EXPECT_TRUE(raises(text, call));
    }
    const std::unique_ptr<BufferApi::I_FrameVector2C> vectors(BufferApi::CreateVectorFrame2C(3, 2, 1, 1));
    EXPECT_TRUE(
        raises("Z-Plane for given frame not valid", [&] { return GetPlaneData<float>(*vectors, 0); }));
}

TEST(GetScaleOnFrame, WritesEachKindBackToItsOwnScale)
{
    const std::unique_ptr<BufferApi::I_Frame> frame(BufferApi::CreateImageFrame(BufferApi::DT_WORD, 3, 2, 1));
    const std::vector<std::function<const Zt::LinearScale&()>> scales{
        [&]() -> const Zt::LinearScale& { return frame->GetScaleX(); },
        [&]() -> const Zt::LinearScale& { return frame->GetScaleY(); },
        [&]() -> const Zt::LinearScale& { return frame->GetScaleZ(); },
        [&]() -> const Zt::LinearScale& { return frame->GetScaleI(); }};
    for (unsigned int kind = 0; kind < 4; ++kind) {
        const auto linked = GetScaleOnFrame(frame.get(), kind);
        EXPECT_EQ(*linked, Zt::LinearScale(static_cast<Zt::ScalePreset>(kind)));
        linked->setFactor(2.0 + kind);
        linked->setUnit("mm");
    }
    for (unsigned int kind = 0; kind < 4; ++kind) {
        EXPECT_EQ(scales[kind]().getFactor(), 2.0 + kind);
        EXPECT_EQ(scales[kind]().getUnit(), "mm");
    }
    EXPECT_TRUE(raises<RTE::Exception>("Invalid scale type", [&] { return GetScaleOnFrame(nullptr, 4); }));
    EXPECT_TRUE(raises("Frame is NULL", [&] { return GetScaleOnFrame(nullptr, 3); }));
}

TEST(GetScaleOnComponent, WritesBackToTheComponent)
{
    const std::unique_ptr<BufferApi::I_Frame> frame(BufferApi::CreateImageFrame(BufferApi::DT_WORD, 3, 2, 1));
    const Zt::LinearScale kelvin(0.1, -3.0, "K", "Temperature");
    const unsigned int index = frame->AddComponent("TS:T", BufferApi::DT_FLOAT, {});
    *GetScaleOnComponent(frame->GetComponent(index)) = kelvin;
    EXPECT_EQ(frame->GetComponent(index)->GetScale(), kelvin);
    GetScaleOnComponent(frame->GetComponent(0))->set(kelvin);
    EXPECT_EQ(frame->GetScaleI(), kelvin);
    EXPECT_TRUE(raises("Component is NULL", [&] { return GetScaleOnComponent(nullptr); }));
}

} // namespace
