// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/FrameData.h"
#include "Core/DataObjects/FloatFrame.h"

#include <new>
#include <numeric>
#include <utility>

namespace
{

using namespace DataObjects;

/// What both classes share.
template <typename Frame>
class FrameTest : public testing::Test
{
protected:
    static Frame ramp(const QSize& size, int first)
    {
        Frame frame(size);
        std::iota(frame.begin(), frame.end(), std::remove_pointer_t<decltype(frame.data())>(first));
        return frame;
    }
    static void expectEmptied(const Frame& frame)
    {
        EXPECT_TRUE(frame.empty());
        EXPECT_EQ(frame.data(), nullptr);
        EXPECT_EQ(frame.frameSize(), (std::is_same_v<Frame, FrameData>) ? QSize(0, 0) : QSize());
    }
    static void expectEqual(const Frame& frame, const Frame& expected)
    {
        EXPECT_EQ(frame.frameSize(), expected.frameSize());
        ASSERT_FALSE(frame.empty());
        EXPECT_TRUE(std::equal(frame.cbegin(), frame.cend(), expected.cbegin(), expected.cend()));
    }
};

using Frames = testing::Types<FrameData, FloatFrame>;
TYPED_TEST_SUITE(FrameTest, Frames);

TYPED_TEST(FrameTest, CopiesArePixelsOfTheirOwn)
{
    const TypeParam expected = this->ramp({3, 5}, 7);
    const TypeParam original = this->ramp({3, 5}, 7);
    TypeParam copy(original);
    this->expectEqual(copy, expected);
    TypeParam assigned(QSize(100, 1));
    assigned = copy;
    *copy.begin() = 0;
    *(assigned.end() - 1) = 0;
    this->expectEqual(original, expected);
    EXPECT_EQ(*assigned.cbegin(), 7);
    EXPECT_EQ(assigned.size(), 15U);
    EXPECT_EQ(assigned.dataSize(), 15U * sizeof(*assigned.data()));
}

TYPED_TEST(FrameTest, MovingTakesTheArrayAndLeavesTheSizeOfTheClass)
{
    TypeParam source = this->ramp({4, 2}, 1);
    const auto* pixels = source.data();
    TypeParam target(std::move(source));
    EXPECT_EQ(target.data(), pixels);
    this->expectEmptied(source);
    source = std::move(target);
    EXPECT_EQ(source.data(), pixels);
    EXPECT_EQ(source.frameSize(), QSize(4, 2));
    this->expectEmptied(target);
}

TYPED_TEST(FrameTest, CopyOfAFrameWithoutPixelsHasNone)
{
    TypeParam emptied = this->ramp({4, 2}, 1);
    delete[] emptied.release();
    this->expectEmptied(emptied);
    this->expectEmptied(TypeParam(emptied));
    TypeParam assigned(QSize(2, 2));
    assigned = emptied;
    this->expectEmptied(assigned);
}

TEST(FrameData, AnEmptySizeIsStoredAsZeroByZero)
{
    for (const QSize size : {QSize(0, 7), QSize(7, 0), QSize(-1, -1), QSize(-3, -3), QSize(5, -1)}) {
        const FrameData frame(size);
        EXPECT_EQ(frame.frameSize(), QSize(0, 0));
        EXPECT_TRUE(frame.empty());
    }
}

TEST(FrameData, AssignsToItself)
{
    FrameData frame(QSize(2, 1));
    std::iota(frame.begin(), frame.end(), static_cast<unsigned short>(4));
    FrameData& same = frame;
    frame = same;
    frame = std::move(same);
    ASSERT_EQ(frame.frameSize(), QSize(2, 1));
    EXPECT_EQ(frame.data()[1], 5);
}

TEST(FloatFrame, AnExtentOfZeroIsKeptWithAnArrayOfNoElements)
{
    for (const QSize size : {QSize(0, 7), QSize(7, 0), QSize(0, 0)}) {
        const FloatFrame frame(size);
        EXPECT_EQ(frame.frameSize(), size);
        EXPECT_FALSE(frame.empty());
        EXPECT_FALSE(FloatFrame(frame).empty());
    }
    const FloatFrame invalid(QSize(-1, 4));
    EXPECT_EQ(invalid.frameSize(), QSize(0, 0));
    EXPECT_TRUE(invalid.empty());
}

TEST(FloatFrame, GivenUpItHasOnePixelBySizeAndNoneByData)
{
    FloatFrame frame(QSize(3, 3));
    delete[] frame.release();
    EXPECT_EQ(frame.size(), 1U);
    EXPECT_EQ(frame.dataSize(), 4U);
    EXPECT_TRUE(frame.empty());
}

TEST(FloatFrame, CountsElementsInThirtyTwoSignedBits)
{
    EXPECT_THROW(FloatFrame(QSize(1 << 16, 1 << 15)), std::bad_alloc);
    // 2^32 elements wrap to none: the stored size is kept, and a copy reads nothing.
    const FloatFrame wrapped(QSize(1 << 16, 1 << 16));
    EXPECT_EQ(wrapped.size(), 1ULL << 32U);
    EXPECT_FALSE(FloatFrame(wrapped).empty());
}

} // namespace
