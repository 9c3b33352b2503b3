// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/MaskFromBuffer.h"

#include "Core/Buffer/BufferApi.h"
#include "Tests/Support/Raises.h"

#include <array>

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using BufferApi::I_Frame;
using BufferApi::I_PlaneBase;
using DataObjects::Private::GetOrCreateMask;
using DataObjects::Private::MoveOrCreateMask;

std::unique_ptr<I_Frame> newFrame(bool withMask)
{
    std::unique_ptr<I_Frame> frame(BufferApi::CreateImageFrame(BufferApi::DT_WORD, 5, 3, 2));
    if (withMask) {
        frame->AddMask({});
    }
    return frame;
}

I_PlaneBase& maskPlane(const I_Frame& frame, unsigned int z)
{
    return *frame.GetComponent(I_Frame::COMPONENT_MASK)->GetPlane(z);
}

TEST(MaskFromBuffer, APlaneGivesAViewOrItsMemory)
{
    const std::unique_ptr<I_PlaneBase> plane(BufferApi::CreatePlane(BufferApi::DT_BYTE, 5, 3));
    const void* const memory = plane->GetData();
    {
        Mask view = GetMask(*plane);
        EXPECT_FALSE(view.HasOwnerShip());
        EXPECT_EQ(view.GetRawPointer(), memory);
        view.Fill(true);
    }
    const Mask owner = GetMask(std::move(*plane));
    EXPECT_TRUE(owner.HasOwnerShip());
    EXPECT_EQ(owner.GetRawPointer(), memory);
    EXPECT_EQ(owner.GetSize(), Math::Size2T<unsigned int>(5, 3));
    EXPECT_TRUE(AllValuesValid(owner));
    EXPECT_EQ(plane->GetData(), nullptr);

    const QString text = "data-pointer is null";
    expectRaised(
        {{text, [&] { return GetMask(*plane); }}, {text, [&] { return GetMask(std::move(*plane)); }}});
}

TEST(MaskFromBuffer, OnlyBytesAreAMask)
{
    const QString text = "plane type cannot be mapped onto a bool array";
    for (const auto type : {BufferApi::DT_WORD, BufferApi::DT_FLOAT, BufferApi::DT_RGB}) {
        const std::unique_ptr<I_PlaneBase> plane(BufferApi::CreatePlane(type, 2, 2));
        expectRaised(
            {{text, [&] { return GetMask(*plane); }}, {text, [&] { return GetMask(std::move(*plane)); }}});
        EXPECT_NE(plane->GetData(), nullptr);
    }
}

TEST(MaskFromBuffer, AFrameGivesTheViewOfEachPlaneOrItsMemory)
{
    const auto frame = newFrame(true);
    GetMask(*frame, 1).Fill(false);
    for (const unsigned int z : {0U, 1U}) {
        const Mask view = GetOrCreateMask(*frame, z, true);
        EXPECT_EQ(view.GetRawPointer(), maskPlane(*frame, z).GetData());
        EXPECT_EQ(AllValuesValid(view), z == 0);
    }
    const void* const memory = maskPlane(*frame, 1).GetData();
    EXPECT_EQ(MoveOrCreateMask(std::move(*frame), 1, false).GetRawPointer(), memory);
    EXPECT_EQ(maskPlane(*frame, 1).GetData(), nullptr);
    EXPECT_NE(maskPlane(*frame, 0).GetData(), nullptr);
}

TEST(MaskFromBuffer, WithoutAMaskOneIsMadeAndZDoesNotMatter)
{
    const auto frame = newFrame(false);
    const std::array<Mask, 2> masks{GetOrCreateMask(*frame, 99, false),
                                    MoveOrCreateMask(std::move(*frame), 99, false)};
    for (const Mask& mask : masks) {
        EXPECT_TRUE(mask.HasOwnerShip());
        EXPECT_EQ(mask.GetSize(), Math::Size2T<unsigned int>(5, 3));
        EXPECT_TRUE(AllValuesValid(mask));
    }
    EXPECT_FALSE(frame->HasMask());
}

TEST(MaskFromBuffer, FailuresComeInOrder)
{
    const auto masked = newFrame(true);
    const auto bare = newFrame(false);
    const QString outOfRange = "Z is out of range";
    const QString noMask = "Frame requires a mask, but has no mask.";
    expectRaised({{outOfRange, [&] { return GetMask(*bare, 2); }},
                  {outOfRange, [&] { return GetMask(*masked, 2); }},
                  {"Frame has no mask", [&] { return GetMask(*bare, 1); }},
                  {outOfRange, [&] { return GetOrCreateMask(*masked, 2, true); }},
                  {noMask, [&] { return GetOrCreateMask(*bare, 2, true); }},
                  {outOfRange, [&] { return MoveOrCreateMask(std::move(*masked), 2, true); }},
                  {noMask, [&] { return MoveOrCreateMask(std::move(*bare), 2, true); }}});
}

} // namespace
