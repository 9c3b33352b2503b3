// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/Mask.h"

#include "Tests/Support/Raises.h"

#include <array>
#include <random>
#include <type_traits>

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using Size = Math::Size2T<unsigned int>;

static_assert(std::has_virtual_destructor_v<Mask>, "objects derived from it are held as masks");

void expectGivenUp(const Mask& mask)
{
    EXPECT_EQ(mask.GetSize(), Size(0, 0));
    EXPECT_EQ(mask.GetRawPointer(), nullptr);
    EXPECT_TRUE(mask.HasOwnerShip());
    EXPECT_TRUE(AllValuesValid(mask));
}

TEST(Mask, IsRowMajor)
{
    Mask mask(3, 2, false);
    mask.SetValid(2, 1, true);
    mask(Math::Point2T<unsigned int>(1, 0)) = true;
    EXPECT_THAT(mask, testing::ElementsAre(false, true, false, false, false, true));
    EXPECT_TRUE(mask.IsValid({2, 1}));
    EXPECT_TRUE(std::as_const(mask)(1, 0));
    EXPECT_TRUE(mask.IsValidPosition(2, 1));
    EXPECT_FALSE(mask.IsValidPosition(3, 1));
    EXPECT_FALSE(mask.IsValidPosition({2, 2}));
}

TEST(Mask, CopyOfAViewOwnsItsPixels)
{
    std::array<bool, 4> memory{true, false, true, false};
    const Mask view(memory.data(), 2, 2, false);
    Mask copy(view);
    EXPECT_TRUE(copy.HasOwnerShip());
    copy.Fill(true);
    EXPECT_THAT(memory, testing::ElementsAre(true, false, true, false));
}

TEST(Mask, CopyAssignmentWritesThroughAView)
{
    std::array<bool, 4> memory{};
    Mask view(memory.data(), Size(2, 2), false);
    const Mask valid(2, 2, true);
    view = valid;
    EXPECT_FALSE(view.HasOwnerShip());
    EXPECT_THAT(memory, testing::Each(true));

    Mask& same = view;
    view = same;
    view = std::move(same);
    EXPECT_EQ(view.GetRawPointer(), memory.data());
}

TEST(Mask, MoveAssignmentOfAViewCopiesAndLeavesTheSource)
{
    std::array<bool, 4> memory{};
    Mask view(memory.data(), 2, 2, false);
    Mask equal(2, 2, true);
    view = std::move(equal);
    EXPECT_THAT(memory, testing::Each(true));
    EXPECT_FALSE(view.HasOwnerShip());
    EXPECT_EQ(equal.GetSize(), Size(2, 2));
    EXPECT_NE(equal.GetRawPointer(), nullptr);

    Mask larger(3, 3, false);
    view = std::move(larger);
    EXPECT_TRUE(view.HasOwnerShip());
    EXPECT_EQ(view.GetSize(), Size(3, 3));
    EXPECT_NE(view.GetRawPointer(), larger.GetRawPointer());
    EXPECT_EQ(larger.GetSize(), Size(3, 3));
    EXPECT_THAT(view, testing::Each(false));
    EXPECT_THAT(memory, testing::Each(true));
}

TEST(Mask, MoveTakesOverWhateverTheSourceHas)
{
    std::array<bool, 4> memory{};
    Mask view(memory.data(), 2, 2, false);
    Mask moved(std::move(view));
    EXPECT_EQ(moved.GetRawPointer(), memory.data());
    EXPECT_FALSE(moved.HasOwnerShip());
    expectGivenUp(view);

    Mask owner(5, 1, true);
    const bool* const pixels = owner.GetRawPointer();
    view = std::move(owner);
    EXPECT_EQ(view.GetRawPointer(), pixels);
    expectGivenUp(owner);
    owner = std::move(moved);
    EXPECT_FALSE(owner.HasOwnerShip());
    EXPECT_EQ(owner.GetRawPointer(), memory.data());
}

TEST(Mask, ReleaseKeepsTheSizeOfAnOwnerAndAView)
{
    Mask owner(2, 3, true);
    const std::unique_ptr<bool[]> pixels(owner.ReleaseRawPointer());
    ASSERT_NE(pixels, nullptr);
    EXPECT_EQ(owner.GetRawPointer(), nullptr);
    EXPECT_EQ(owner.GetSize(), Size(2, 3));

    Mask view(pixels.get(), 2, 3, false);
    EXPECT_EQ(view.ReleaseRawPointer(), nullptr);
    EXPECT_EQ(view.GetRawPointer(), pixels.get());
}

TEST(Mask, WithoutPixelsNothingIsTouched)
{
    Mask without(2, 3, true);
    delete[] without.ReleaseRawPointer();
    Mask whole(2, 3, false);
    without.Fill(true);
    without |= whole;
    without = whole;
    whole = without;
    whole |= without;
    EXPECT_THAT(whole, testing::Each(false));
    EXPECT_EQ(Mask(without).GetRawPointer(), nullptr);
    EXPECT_EQ(without.begin(), without.end());

    Mask empty(0, 0);
    const Mask otherEmpty(Size(0, 0), false);
    empty = otherEmpty;
    EXPECT_TRUE(AllValuesValid(empty));
}

TEST(Mask, FailuresLeaveBothAsTheyWere)
{
    Mask mask(2, 2, true);
    const Mask transposed(4, 1, false);
    const Mask empty(0, 0);
    const QString copyText = "Source and destination have different sizes.";
    const QString otherText = "Other mask has wrong size.";
    expectRaised({{"data-pointer is null", [] { Mask(nullptr, 0, 0, true); }},
                  {copyText, [&] { mask = transposed; }},
                  {copyText, [&] { mask = empty; }},
                  {otherText, [&] { mask &= transposed; }},
                  {otherText, [&] { mask |= transposed; }},
                  {otherText, [&] { mask ^= empty; }}});
    EXPECT_TRUE(AllValuesValid(mask));
}

struct Operation
{
    const char* name;
    Mask& (Mask::*apply)(const Mask&);
    bool (*expected)(bool, bool);
};

const std::array<Operation, 3> operations{{
    {"and", &Mask::operator&=, [](bool a, bool b) { return a && b; }},
    {"or", &Mask::operator|=, [](bool a, bool b) { return a || b; }},
    {"xor", &Mask::operator^=, [](bool a, bool b) { return a != b; }},
}};

/// Bytes as foreign memory may hold them: half of them 0, the others anything.
std::vector<unsigned char> anyBytes(std::size_t count)
{
    std::mt19937 random(7);
    std::vector<unsigned char> bytes(count);
    for (auto& byte : bytes) {
        byte = static_cast<unsigned char>(random() % 2 == 0 ? 0 : random() % 256);
    }
    return bytes;
}

Mask viewOf(std::vector<unsigned char>& bytes, std::size_t first, std::size_t count)
{
    return {reinterpret_cast<bool*>(bytes.data() + first), static_cast<unsigned int>(count), 1, false};
}

/// Combines two stretches of one array, at all distances in turn, and compares with the plain order of bytes.
void expectCombined(const Operation& operation, std::size_t target, std::size_t other, std::size_t count)
{
    std::vector<unsigned char> bytes = anyBytes(400);
    std::vector<unsigned char> expected = bytes;
    for (std::size_t i = 0; i < count; ++i) {
        expected[target + i] = operation.expected(expected[target + i] != 0, expected[other + i] != 0);
    }
    Mask left = viewOf(bytes, target, count);
    (left.*operation.apply)(viewOf(bytes, other, count));
    EXPECT_EQ(bytes, expected) << operation.name << ' ' << target << ' ' << other << ' ' << count;
}

TEST(Mask, CombinesAnyBytesAndOverlappingViewsInAscendingOrder)
{
    for (const Operation& operation : operations) {
        for (const std::size_t count : {0U, 1U, 31U, 32U, 33U, 64U, 150U, 199U}) {
            expectCombined(operation, 0, 201, count);
            expectCombined(operation, 201, 0, count);
            for (const std::size_t distance : {0U, 1U, 3U, 16U, 31U, 32U, 33U, 63U, 64U, 65U}) {
                expectCombined(operation, distance, 0, count);
                expectCombined(operation, 0, distance, count);
            }
        }
    }
}

TEST(Mask, AnyByteButZeroIsValid)
{
    std::vector<unsigned char> bytes(300, 255);
    const Mask view = viewOf(bytes, 0, bytes.size());
    EXPECT_TRUE(view.IsValid(7, 0));
    EXPECT_TRUE(view(7, 0));
    EXPECT_TRUE(AllValuesValid(view));
    for (const std::size_t position : {0U, 1U, 31U, 32U, 255U, 299U}) {
        bytes[position] = 0;
        EXPECT_FALSE(AllValuesValid(view)) << position;
        bytes[position] = 2;
    }
}

} // namespace
