// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/BufferLibDataAccess.h"

#include "Core/Buffer/BufferApi.h"
#include "Tests/Support/ImageFrames.h"
#include "Tests/Support/Raises.h"
#include "Tests/Support/Scales.h"

namespace
{

using namespace TestSupport;
using namespace DataObjects::Private;

TEST(GetPlaneData, ChecksPlaneThenType)
{
    const auto owner = newFrame(BufferApi::DT_WORD, 3, 2, 2);
    const BufferApi::I_Frame& frame = *owner;
    const BufferApi::I_Component& pixels = *frame.GetComponent(0);
    EXPECT_EQ(GetPlaneData<unsigned short>(frame, 1), frame.GetPlane(0, 1)->GetData());
    EXPECT_EQ(GetPlaneData<unsigned short>(pixels, 1), frame.GetPlane(0, 1)->GetData());
    const std::unique_ptr<BufferApi::I_FrameVector2C> vectors(BufferApi::CreateVectorFrame2C(3, 2, 1, 1));
    expectRaised({{"Z-Plane for given frame not valid", [&] { return GetPlaneData<float>(frame, 2); }},
                  {"Z-Plane for given frame not valid", [&] { return GetPlaneData<float>(*vectors, 0); }},
                  {"Pixel-plane of given frame has not the required type",
                   [&] { return GetPlaneData<float>(frame, 1); }},
                  {"Plane for given frame not valid", [&] { return GetPlaneData<float>(pixels, 2); }},
                  {"Plane for given frame has not the required type",
                   [&] { return GetPlaneData<BufferApi::RgbQuad>(pixels, 1); }}});
}

TEST(GetScaleOnFrame, WritesEachKindBackToItsOwnScale)
{
    const auto frame = newFrame(BufferApi::DT_WORD, 3, 2);
    for (unsigned int kind = 0; kind < 4; ++kind) {
        const auto linked = GetScaleOnFrame(frame.get(), kind);
        EXPECT_EQ(*linked, Zt::LinearScale(static_cast<Zt::ScalePreset>(kind)));
        linked->set(scaleOf(2.0 + kind));
    }
    EXPECT_EQ(scalesOf(*frame), (FourScales{scaleOf(2), scaleOf(3), scaleOf(4), scaleOf(5)}));
    EXPECT_TRUE(raises<RTE::Exception>("Invalid scale type", [&] { return GetScaleOnFrame(nullptr, 4); }));
    EXPECT_TRUE(raises("Frame is NULL", [&] { return GetScaleOnFrame(nullptr, 3); }));
}

TEST(GetScaleOnComponent, WritesBackToTheComponent)
{
    const auto frame = newFrame(BufferApi::DT_WORD, 3, 2);
    const unsigned int index = frame->AddComponent("TS:T", BufferApi::DT_FLOAT, {});
    *GetScaleOnComponent(frame->GetComponent(index)) = kelvin;
    EXPECT_EQ(frame->GetComponent(index)->GetScale(), kelvin);
    GetScaleOnComponent(frame->GetComponent(0))->set(kelvin);
    EXPECT_EQ(frame->GetScaleI(), kelvin);
    EXPECT_TRUE(raises("Component is NULL", [&] { return GetScaleOnComponent(nullptr); }));
}

} // namespace
