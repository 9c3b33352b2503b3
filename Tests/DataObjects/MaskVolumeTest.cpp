// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/MaskVolume.h"
#include "Core/DataObjects/MaskVolumeList.h"

#include "Tests/Support/Raises.h"

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using Size = Math::Size3T<unsigned int>;
using Planes = std::vector<std::shared_ptr<Mask>>;
using Volumes = std::vector<std::shared_ptr<MaskVolume>>;

MaskVolume filledVolume(const Size& size, bool value)
{
    MaskVolume volume(size);
    volume = value;
    return volume;
}

MaskVolumeList filledList(const Size& size, unsigned int count, bool value)
{
    MaskVolumeList list(size, count);
    list = value;
    return list;
}

TEST(MaskVolume, RejectsWhatIsNoStackOfEqualPlanes)
{
    const auto plane = std::make_shared<Mask>(2, 2, true);
    const auto other = std::make_shared<Mask>(2, 1, true);
    expectRaised({{"At least 1 plane required.", [] { MaskVolume(4, 4, 0); }},
                  {"At least 1 plane required", [] { MaskVolume(Planes{}); }},
                  {"Mask is not valid.",
                   [&] {
                       MaskVolume(Planes{plane, nullptr});
                   }},
                  {"Mask is not valid.", [] { MaskVolume(std::shared_ptr<Mask>()); }},
                  {"Mask has invalid size.", [&] {
                       MaskVolume(Planes{plane, other});
                   }}});
}

TEST(MaskVolume, SharesMovesOrCopiesThePlane)
{
    const auto plane = std::make_shared<Mask>(3, 2, true);
    const MaskVolume shared(Planes{plane, plane});
    EXPECT_EQ(shared.GetSize(), Size(3, 2, 2));
    EXPECT_EQ(&shared.GetMask(1), plane.get());
    EXPECT_NE(&MaskVolume(shared).GetMask(0), plane.get());

    const MaskVolume copied(*plane);
    plane->SetValid(2, 1, false);
    EXPECT_TRUE(copied.IsValid(2, 1, 0));
    EXPECT_FALSE(MaskVolume(plane).IsValid(2, 1, 0));
    const bool* const pixels = plane->GetRawPointer();
    const MaskVolume moved(std::move(*plane));
    EXPECT_EQ(moved.GetMask(0).GetRawPointer(), pixels);
    EXPECT_TRUE(raises<RTE::OutOfRangeError>("z", [&] { return moved.GetMask(1); }));
}

TEST(MaskVolume, AssignmentGivesNewPlanes)
{
    MaskVolume target = filledVolume({2, 2, 2}, true);
    const std::shared_ptr<Mask> held = target[1];
    MaskVolume source = filledVolume({2, 2, 2}, false);
    target.DeepCopyFrom(source);
    source.SetValid(0, 0, 0, true);
    EXPECT_FALSE(target.IsValid(0, 0, 0));
    EXPECT_TRUE(AllValuesValid(*held));

    const std::shared_ptr<Mask> kept = target[0];
    const MaskVolume& same = target;
    target = same;
    EXPECT_EQ(target[0], kept);

    const MaskVolume other = filledVolume({2, 2, 1}, true);
    EXPECT_TRUE(raises("Mask volume has a different size", [&] { target = other; }));
    EXPECT_EQ(target[0], kept);
    target.MoveFrom(filledVolume({1, 1, 3}, true));
    EXPECT_EQ(target.GetSize(), Size(1, 1, 3));
}

TEST(MaskVolume, MovedFromIsEmpty)
{
    MaskVolume volume = filledVolume({2, 3, 4}, true);
    const std::shared_ptr<Mask> plane = volume[3];
    const MaskVolume moved(std::move(volume));
    EXPECT_EQ(&moved.GetMask(3), plane.get());
    EXPECT_EQ(volume.GetSize(), Size(0, 0, 0));
    EXPECT_TRUE(volume.empty());
}

TEST(MaskVolume, CombinesPlaneByPlane)
{
    MaskVolume volume = filledVolume({2, 2, 2}, true);
    MaskVolume other = filledVolume({2, 2, 2}, true);
    other.SetValid(Math::Point3T<int>(1, 0, 1), false);
    volume &= other;
    EXPECT_FALSE(volume.IsValid(Math::Point3T<int>(1, 0, 1)));
    EXPECT_TRUE(volume.IsValid(1, 0, 0));
    EXPECT_TRUE(volume.IsValid(1, 1, 1));
    EXPECT_TRUE(raises("Size of mask volumes is different", [&] {
        volume &= filledVolume({2, 2, 1}, false);
    }));
    EXPECT_TRUE(volume.IsValid(1, 1, 1));
}

TEST(MaskVolumeList, RejectsEmptyAndUnequal)
{
    const QString empty = "List size of mask volumes not allowed to be zero";
    const QString different = "Size of mask volumes is different";
    const auto volume = std::make_shared<MaskVolume>(2, 2, 2);
    const auto other = std::make_shared<MaskVolume>(2, 2, 1);
    std::vector<MaskVolume> unequal{*volume, *other};
    expectRaised({{empty, [] { MaskVolumeList(2, 2, 0, 0); }},
                  {empty, [] { MaskVolumeList(Volumes{}); }},
                  {empty, [] { MaskVolumeList(std::vector<MaskVolume>{}); }},
                  {"At least 1 plane required.", [] { MaskVolumeList(2, 2, 0, 1); }},
                  {different,
                   [&] {
                       MaskVolumeList(Volumes{volume, other});
                   }},
                  {different, [&] { MaskVolumeList(std::move(unequal)); }},
                  {"Mask volume is not valid", [&] {
                       MaskVolumeList(Volumes{volume, nullptr});
                   }}});
    EXPECT_EQ(unequal[0].GetSize(), Size(2, 2, 2));
}

TEST(MaskVolumeList, CopiesDeeplyAndMoves)
{
    std::vector<MaskVolume> volumes(2, filledVolume({3, 2, 1}, true));
    const Mask* const plane = &volumes[1].GetMask(0);
    MaskVolumeList list(std::move(volumes));
    EXPECT_EQ(list.size(), 2U);
    EXPECT_EQ(list.GetVolumeSize(), Size(3, 2, 1));
    EXPECT_EQ(&list[1]->GetMask(0), plane);

    const MaskVolumeList copy(list);
    const std::shared_ptr<MaskVolume> held = list[0];
    list = filledList({1, 1, 1}, 3, false);
    EXPECT_EQ(list.size(), 3U);
    list.DeepCopyFrom(copy);
    list = false;
    EXPECT_TRUE(held->IsValid(2, 1, 0));
    EXPECT_TRUE(copy[1]->IsValid(2, 1, 0));
    EXPECT_FALSE(list[1]->IsValid(2, 1, 0));

    MaskVolumeList& same = list;
    list.MoveFrom(std::move(same));
    EXPECT_EQ(list.size(), 2U);
}

TEST(MaskVolumeList, CombinesAllOrNothing)
{
    MaskVolumeList list = filledList({2, 2, 1}, 2, true);
    MaskVolumeList other = filledList({2, 2, 1}, 2, true);
    other[1]->SetValid(1, 1, 0, false);
    list &= other;
    EXPECT_TRUE(list[0]->IsValid(1, 1, 0));
    EXPECT_FALSE(list[1]->IsValid(1, 1, 0));

    const QString text = "Size of mask volumes is different";
    other = false;
    other[1] = std::make_shared<MaskVolume>(2, 2, 2);
    expectRaised({{text, [&] { list &= filledList({2, 2, 1}, 3, false); }}, {text, [&] { list &= other; }}});
    EXPECT_TRUE(list[0]->IsValid(0, 0, 0));
}

} // namespace
