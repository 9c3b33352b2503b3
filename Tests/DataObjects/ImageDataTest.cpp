// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageData.h"

#include "Core/Common/Array.h"
#include "Tests/DataObjects/PixelReference.h"
#include "Tests/Support/PixelTypeList.h"
#include "Tests/Support/Raises.h"
#include "Tests/Support/SamePixels.h"

#include <algorithm>
#include <array>
#include <new>
#include <numeric>

namespace
{

using namespace DataObjects;
using namespace TestSupport;

/// Six numbered pixels, 3 × 2.
template <typename T>
ImageData<T> ramp(T first)
{
    ImageData<T> data(3, 2);
    std::iota(data.begin(), data.end(), first);
    return data;
}

/// Tells what happens to it.
class LoggedBlock : public RTE::MemoryBlock
{
public:
    LoggedBlock(void* data, std::string& log) : m_data(data), m_log(log) {}
    ~LoggedBlock() override { m_log += "destroyed;"; }

    void* data() const override { return m_data; }
    unsigned long long size() const override { return 0; }
    void release() override { m_log += "released;"; }

private:
    void* m_data;
    std::string& m_log;
};

template <typename T>
class ImageDataTest : public testing::Test
{
};

TYPED_TEST_SUITE(ImageDataTest, PixelTypeList);

TYPED_TEST(ImageDataTest, PixelsLieRowByRow)
{
    auto data = ramp<TypeParam>(1);
    EXPECT_EQ(static_cast<int>(data.GetDataType()), PixelTypes::number<TypeParam>);
    EXPECT_EQ(data(2, 1), 6);
    data.SetPixel({1, 1}, 40);
    data[{0, 1}] = 30;
    EXPECT_EQ(data[4], 40);
    EXPECT_EQ(data.GetPixel(0, 1), 30);
    EXPECT_EQ(data.GetRawSize(), 6U);
    EXPECT_TRUE(data.IsValidPosition({2, 1}));
    EXPECT_FALSE(data.IsValidPosition(3, 0));
    EXPECT_FALSE(data.IsValidPosition(0, 2));
}

TYPED_TEST(ImageDataTest, AnEmptyPlaneHasAnArrayAndNoPixels)
{
    ImageData<TypeParam> data(0, 0);
    EXPECT_TRUE(data.empty());
    EXPECT_NE(data.GetRawPointer(), nullptr);
    data *= 2.0;
    data /= 0.0;
    data /= ImageData<TypeParam>(0, 0);
    data.Fill(1);
    EXPECT_EQ(data.begin(), data.end());
}

TYPED_TEST(ImageDataTest, AnImpossibleSizeFailsAsAnAllocation)
{
    EXPECT_THROW(ImageData<TypeParam>(0xFFFFFFFFU, 0xFFFFFFFFU), std::bad_alloc);
}

TYPED_TEST(ImageDataTest, FillsWithEveryPattern)
{
    for (const unsigned int width : {1U, 7U, 65U, 1001U}) {
        ImageData<TypeParam> data(width, 3, TypeParam{9});
        for (const TypeParam value : {TypeParam{0}, TypeParam{5}, std::numeric_limits<TypeParam>::max(),
                                      static_cast<TypeParam>(-TypeParam{0})}) {
            data = value;
            ASSERT_TRUE(samePixels(data, std::vector<TypeParam>(data.size(), value)));
        }
    }
}

TYPED_TEST(ImageDataTest, FillsPlanesBeyondTheCache)
{
    const auto width = static_cast<unsigned int>(PixelReference::bytesBeyondTheCache() / sizeof(TypeParam));
    std::vector<TypeParam> guarded(width + 2, TypeParam{77});
    ImageData<TypeParam> view(guarded.data() + 1, width, 1, false);
    view = TypeParam{5};
    EXPECT_TRUE(std::all_of(view.begin(), view.end(), [](TypeParam pixel) { return pixel == 5; }));
    EXPECT_EQ(guarded.front(), 77);
    EXPECT_EQ(guarded.back(), 77);
}

TEST(ImageData, NullPointersAreRefused)
{
    std::string log;
    int* none = nullptr;
    const QString text = "data-pointer is null";
    expectRaised({{text, [&] { ImageData<int>(none, 1, 1, true); }},
                  {text,
                   [&] {
                       ImageData<int>(none, {0, 0}, false);
                   }},
                  {text, [&] { ImageData<int>(std::make_unique<LoggedBlock>(nullptr, log), 1, 1, 5); }},
                  {text, [] { ImageData<int>(std::unique_ptr<RTE::MemoryBlock>(), 1, 1); }}});
    EXPECT_EQ(log, "released;destroyed;");
}

TEST(ImageData, CopyOfAViewOwnsItsPixelsAndAnAdoptedArrayIsFreedOnce)
{
    std::array<float, 6> pixels{1, 2, 3, 4, 5, 6};
    const ImageData<float> view(pixels.data(), 3, 2, false);
    const ImageData<float> copy(view);
    const auto untyped = view.CreateCopy();
    pixels[5] = 60;
    EXPECT_EQ(CastImageDataTo<float>(*untyped)(2, 1), 6);
    EXPECT_EQ(view(2, 1), 60);
    EXPECT_EQ(copy(2, 1), 6);
    EXPECT_FALSE(view.HasOwnerShip());
    EXPECT_TRUE(copy.HasOwnerShip());
    EXPECT_TRUE(ImageData<double>(RTE::newArray<double>(6), {3, 2}, true).HasOwnerShip());
}

TEST(ImageData, MoveConstructionLeavesAnEmptyOwner)
{
    auto source = ramp(1);
    const int* pixels = source.GetRawPointer();
    const ImageData<int> moved(std::move(source));
    EXPECT_EQ(moved.GetRawPointer(), pixels);
    EXPECT_EQ(source.GetSize(), (Math::Size2T<unsigned int>(0, 0)));
    EXPECT_TRUE(source.empty());
    EXPECT_TRUE(source.HasOwnerShip());
    EXPECT_EQ(source.GetRawPointer(), nullptr);
    const ImageData<int> copy(source);
    source = copy;
    source.Fill(3);
    source += 1.0;
    source /= copy;
    EXPECT_EQ(source.GetRawPointer(), nullptr);
    source = ramp(7);
    EXPECT_EQ(source(0, 0), 7);
}

TEST(ImageData, BlockStaysWithTheSourceOfAMove)
{
    std::array<int, 6> pixels{};
    std::string log;
    {
        ImageData<int> source(std::make_unique<LoggedBlock>(pixels.data(), log), 3, 2, 4);
        EXPECT_FALSE(source.HasOwnerShip());
        EXPECT_EQ(pixels[5], 4);
        {
            const ImageData<int> moved(std::move(source));
            EXPECT_EQ(moved.GetRawPointer(), pixels.data());
            EXPECT_FALSE(moved.HasOwnerShip());
            EXPECT_TRUE(source.HasOwnerShip());
        }
        EXPECT_EQ(log, "");
    }
    EXPECT_EQ(log, "released;destroyed;");
}

TEST(ImageData, DetachedBlockIsStillReleasedBesideTheNewArray)
{
    std::array<int, 2> pixels{1, 2};
    std::string log;
    {
        ImageData<int> data(std::make_unique<LoggedBlock>(pixels.data(), log), 2, 1);
        data = ramp(5);
        EXPECT_TRUE(data.HasOwnerShip());
        EXPECT_EQ(data(2, 1), 10);
        EXPECT_EQ(pixels[1], 2);
        EXPECT_EQ(log, "");
    }
    EXPECT_EQ(log, "released;destroyed;");
}

TEST(ImageData, MoveAssignmentOfAnOwnerSteals)
{
    auto destination = ramp(1);
    auto source = ramp(20);
    const int* pixels = source.GetRawPointer();
    destination = std::move(source);
    EXPECT_EQ(destination.GetRawPointer(), pixels);
    EXPECT_TRUE(source.empty());
    EXPECT_TRUE(source.HasOwnerShip());

    std::array<int, 2> foreign{1, 2};
    destination = ImageData<int>(foreign.data(), 1, 2, false);
    EXPECT_FALSE(destination.HasOwnerShip());
    EXPECT_EQ(destination.GetRawPointer(), foreign.data());
}

TEST(ImageData, MoveAssignmentIntoAViewWritesThroughWhileSizesAllow)
{
    std::array<int, 6> pixels{};
    ImageData<int> view(pixels.data(), 3, 2, false);
    auto source = ramp(1);
    view.MoveFrom(std::move(source));
    EXPECT_EQ(pixels[5], 6);
    EXPECT_EQ(source(2, 1), 6);
    EXPECT_FALSE(view.HasOwnerShip());

    ImageData<int> otherShape(2, 3, 9);
    view = std::move(otherShape);
    EXPECT_EQ(pixels[5], 6);
    EXPECT_TRUE(view.HasOwnerShip());
    EXPECT_EQ(view.GetHeight(), 3U);
    EXPECT_EQ(view(1, 2), 9);
    EXPECT_EQ(otherShape(1, 2), 9);
}

TEST(ImageData, AssignmentToItselfDoesNothing)
{
    auto data = ramp(1);
    auto& same = data;
    data = same;
    data = std::move(same);
    data.Assign(same);
    EXPECT_EQ(data(2, 1), 6);
}

TEST(ImageData, CopyAssignmentNeverResizes)
{
    std::array<int, 6> pixels{};
    ImageData<int> view(pixels.data(), 3, 2, false);
    view = static_cast<const ImageData<int>&>(ramp(1));
    EXPECT_EQ(pixels[5], 6);
    const ImageData<int> otherShape(2, 3, 9);
    EXPECT_TRUE(raises("Source and destination have different sizes.", [&] { view = otherShape; }));
    EXPECT_EQ(pixels[5], 6);
    EXPECT_EQ(view.GetWidth(), 3U);
    const ImageData<int> first(pixels.data(), 4, 1, false);
    ImageData<int> overlapping(pixels.data() + 2, 4, 1, false);
    overlapping = first;
    EXPECT_EQ(pixels, (std::array<int, 6>{1, 2, 1, 2, 3, 4}));
}

TEST(ImageData, OnlyAnOwnerReleasesItsArray)
{
    auto owner = ramp(1);
    const std::unique_ptr<int[]> released(owner.ReleaseRawPointer());
    EXPECT_EQ(released[5], 6);
    EXPECT_EQ(owner.GetRawPointer(), nullptr);
    EXPECT_EQ(owner.size(), 6U);
    EXPECT_TRUE(owner.HasOwnerShip());

    ImageData<int> view(released.get(), 3, 2, false);
    EXPECT_EQ(view.ReleaseRawPointer(), nullptr);
    EXPECT_EQ(view(2, 1), 6);
}

TEST(ImageData, WhoeverReleasedItsPixelsHasNoneToPassOver)
{
    auto released = ramp(1);
    const std::unique_ptr<int[]> array(released.ReleaseRawPointer());
    auto target = ramp(50);
    ImageData<float> converted(3, 2, 0.0F);
    std::array<int, 6> pixels{};
    ImageData<int> view(pixels.data(), 3, 2, false);
    const QString text = "data-pointer is null";
    expectRaised({{text, [&] { ImageData<int>{released}; }},
                  {text, [&] { target = std::as_const(released); }},
                  {text, [&] { released = std::as_const(target); }},
                  {text, [&] { view = std::move(released); }},
                  {text, [&] { converted.Assign(released); }},
                  {text, [&] { released.Assign(converted); }},
                  {text, [&] { released = 7; }},
                  {text, [&] { released *= 2.0; }},
                  {text, [&] { target /= released; }}});
    EXPECT_EQ(target(2, 1), 55);
    released = std::move(target);
    EXPECT_EQ(released(2, 1), 55);
}

TEST(ImageData, AnOwnerThatIsAssignedAViewOfItsOwnPixelsKeepsThem)
{
    for (const unsigned int row : {0U, 1U}) {
        auto data = ramp(1);
        ImageData<int> view(data.GetRawPointer() + 3 * row, 3, 2 - row, false);
        data = std::move(view);
        EXPECT_TRUE(data.HasOwnerShip());
        EXPECT_EQ(data.GetHeight(), 2 - row);
        EXPECT_EQ(data(2, 1 - row), 6);
        EXPECT_TRUE(view.empty());
    }
}

} // namespace
