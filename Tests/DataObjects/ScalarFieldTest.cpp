// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ScalarField.h"

#include "Core/DataObjects/ScalarFieldAccess.h"
#include "Tests/DataObjects/Fields.h"
#include "Tests/DataObjects/PixelReference.h"
#include "Tests/Support/AllTypes.h"
#include "Tests/Support/EachTarget.h"
#include "Tests/Support/Raises.h"
#include "Tests/Support/SamePixels.h"

#include <algorithm>
#include <array>

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using Zt::LinearScale;
using Size = Math::Size2T<unsigned int>;

const QString differentSizes = "Source and destination have different sizes.";

TEST(ScalarField, TakesCopiesOrViewsWhatItIsMadeOf)
{
    forAllTypes([]<typename T>(PixelTypes::Tag<T>) {
        ImageData<T> data(3, 2, T{7});
        const T* const pixels = data.GetRawPointer();
        const ScalarField<T> copy(std::as_const(data), kelvin);
        EXPECT_NE(copy.begin(), pixels);
        EXPECT_EQ(copy.GetPixel(2, 1), T{7});

        ScalarField<T> taken(std::move(data), kelvin);
        EXPECT_EQ(taken.begin(), pixels);
        EXPECT_EQ(taken.GetScaleI(), kelvin);
        taken.SetPixel(0, 1, T{9});
        EXPECT_EQ(std::as_const(taken)[3], T{9});

        auto object = std::make_unique<ImageData<T>>(2, 2, T{1});
        const ImageData<T>* const address = object.get();
        EXPECT_EQ(&ScalarField<T>(std::move(object), plain).GetDataT(), address);

        ScalarField<T> view(2, 3, taken.begin(), false, plain);
        view.InitializeWithZeros();
        EXPECT_THAT(taken, testing::Each(T{0}));
        EXPECT_TRUE(ScalarField<T>(2, 1, new T[2], true, plain).GetDataT().HasOwnerShip());
        EXPECT_EQ(ScalarField<T>(Size(5, 4), plain).size(), 20U);
    });
}

TEST(ScalarField, RefusesNull)
{
    const QString text = "data-pointer is null";
    expectRaised({{text, [] { ScalarField<int>(1, 1, nullptr, true, plain); }},
                  {text, [] { ScalarField<int>(std::unique_ptr<ImageData<int>>(), plain); }}});
}

TEST(ScalarField, CopiesShareNothing)
{
    std::array<float, 4> memory{1, 2, 3, 4};
    const ScalarField<float> view(2, 2, memory.data(), false, kelvin);
    ScalarField<float> copy(view);
    const auto created = view.CreateCopy();
    EXPECT_TRUE(copy.GetDataT().HasOwnerShip());
    copy.InitializeWithZeros();
    copy.SetScaleI(plain);
    for (const auto* const field : {&view, &CastScalarFieldTo<float>(std::as_const(*created))}) {
        EXPECT_THAT(*field, testing::ElementsAre(1, 2, 3, 4));
        EXPECT_EQ(field->GetScaleI(), kelvin);
    }
}

TEST(ScalarField, MovesTakeBothPointers)
{
    auto source = filled<int>(2, 2, 5);
    const auto data = source.GetSharedDataT();
    const LinearScale* const scale = &source.GetScaleI();
    const auto moved = source.MoveFrom();
    EXPECT_EQ(moved->ShareData(), data);
    EXPECT_EQ(&moved->GetScaleI(), scale);
    EXPECT_EQ(source.GetSharedDataT(), nullptr);

    auto target = filled<int>(7, 1, 0, plain);
    target = CastScalarFieldTo<int>(std::move(*moved));
    EXPECT_EQ(target.GetSharedDataT(), data);
    EXPECT_EQ(&target.GetScaleI(), scale);
    source = std::move(target);
    EXPECT_EQ(source.GetSharedDataT(), data);
}

TEST(ScalarField, MoveAssignmentOfAViewWritesToItsMemory)
{
    std::array<int, 4> memory{};
    ScalarField<int> view(2, 2, memory.data(), false, plain);
    auto source = filled<int>(2, 2, 5);
    view = std::move(source);
    EXPECT_THAT(memory, testing::Each(5));
    EXPECT_EQ(view.GetScaleI(), kelvin);
    EXPECT_EQ(source.size(), 4U);

    auto other = filled<int>(4, 1, 6);
    EXPECT_TRUE(raises(differentSizes, [&] { view = std::move(other); }));
    EXPECT_EQ(other.size(), 4U);
    EXPECT_THAT(memory, testing::Each(5));
}

TEST(ScalarField, AssignmentReachesAllWhoShareTheField)
{
    auto target = filled<double>(2, 2, 1.0, plain);
    const auto shared = target.ShareData();
    const LinearScale* const scale = &target.GetScaleI();

    const auto source = filled<double>(2, 2, 4.5);
    target = source;
    EXPECT_EQ(target.ShareData(), shared);
    EXPECT_EQ(&target.GetScaleI(), scale);
    EXPECT_EQ(*scale, kelvin);
    EXPECT_THAT(target, testing::Each(4.5));

    target.SetScaleI(plain);
    target.SetData(ImageData<double>(2, 2, 8.0));
    EXPECT_EQ(target.ShareData(), shared);
    EXPECT_EQ(*scale, plain);
    EXPECT_THAT(target, testing::Each(8.0));
}

TEST(ScalarField, FailedAssignmentsChangeNothing)
{
    auto target = filled<float>(2, 2, 1.0F, plain);
    const auto transposed = filled<float>(4, 1, 2.0F);
    const auto otherType = filled<int>(2, 2, 3);
    StrangeField strange(2, 2);
    const QString badCast = "bad scalar field cast";
    const QString unsupported = "Unsupported scalar field type";
    expectRaised(
        {{differentSizes, [&] { target = transposed; }},
         {differentSizes, [&] { Assign(transposed, target); }},
         {"Image data has different size than scalar field.", [&] { target.SetData(transposed.GetDataT()); }},
         {badCast, [&] { target.DeepCopyFrom(otherType); }},
         {badCast, [&] { Assign(otherType, target); }},
         {badCast, [&] { target.DeepCopyFrom(strange); }}});
    expectRaised<RTE::Exception>(
        {{unsupported, [&] { Assign(strange, target); }}, {unsupported, [&] { Assign(target, strange); }}});
    EXPECT_THAT(target, testing::Each(1.0F));
    EXPECT_EQ(target.GetScaleI(), plain);

    Assign(filled<float>(2, 2, 6.0F), target);
    EXPECT_THAT(target, testing::Each(6.0F));
    EXPECT_EQ(target.GetScaleI(), kelvin);
}

TEST(ScalarField, CastsOnlyToItsType)
{
    forAllPairs([]<typename From, typename To>(PixelTypes::Tag<From>, PixelTypes::Tag<To>) {
        const auto field = std::make_shared<ScalarField<From>>(filled(From{1}));
        const std::shared_ptr<ScalarFieldVariant> variant = field;
        const std::shared_ptr<const ScalarFieldVariant> constant = field;
        constexpr bool same = std::is_same_v<From, To>;
        EXPECT_EQ(IsScalarFieldOfType<To>(*variant), same);
        EXPECT_EQ(variant->HasSameType(filled(To{})), same);
        EXPECT_EQ(static_cast<int>(variant->GetDataType()) == PixelTypes::number<To>, same);
        EXPECT_EQ(CastScalarFieldTo<To>(variant) == variant, same);
        EXPECT_EQ(CastScalarFieldTo<To>(constant) == constant, same);
        EXPECT_EQ(CastScalarFieldTo<To>(variant) == nullptr, !same);
        if constexpr (same) {
            EXPECT_EQ(&CastScalarFieldTo<To>(*variant), field.get());
            EXPECT_EQ(&CastScalarFieldTo<To>(*constant), field.get());
        } else {
            const QString text = "bad scalar field cast";
            expectRaised({{text, [&] { return CastScalarFieldTo<To>(*variant); }},
                          {text, [&] { return CastScalarFieldTo<To>(*constant); }},
                          {text, [&] { return CastScalarFieldTo<To>(std::move(*variant)); }}});
        }
    });
    EXPECT_EQ(CastScalarFieldTo<int>(std::shared_ptr<ScalarFieldVariant>()), nullptr);
}

/// As pixels are converted, but that `unsigned int` to `int` saturates too.
template <typename To, typename From>
To saturated(From value)
{
    if constexpr (std::is_same_v<From, unsigned int> && std::is_same_v<To, int>) {
        return value > 0x7FFFFFFFU ? 0x7FFFFFFF : static_cast<int>(value);
    } else {
        return PixelReference::converted<To>(value);
    }
}

template <typename To, typename From>
void checkConversion(std::vector<From>& pixels)
{
    std::vector<To> expected(pixels.size());
    std::transform(pixels.begin(), pixels.end(), expected.begin(), saturated<To, From>);
    const auto width = static_cast<unsigned int>(pixels.size());
    const ScalarField<From> source(width, 1, pixels.data(), false, kelvin);
    const auto copy = CreateScalarFieldCopyOfType<To>(source);
    ASSERT_TRUE(samePixels(copy, expected));
    ASSERT_EQ(copy.GetScaleI(), kelvin);
    ASSERT_NE(static_cast<const void*>(copy.begin()), pixels.data());
}

TEST(ScalarFieldConversion, SaturatesForAllPairs)
{
    forAllPairs([](auto from, auto to) {
        auto pixels = PixelReference::samples<typename decltype(from)::type>();
        onEachTarget([&] { checkConversion<typename decltype(to)::type>(pixels); });
    });
}

TEST(ScalarFieldConversion, SaturatesInPlanesBeyondTheCache)
{
    const auto once = PixelReference::samples<unsigned int>();
    std::vector<unsigned int> pixels;
    while (pixels.size() * sizeof(int) < PixelReference::bytesBeyondTheCache()) {
        pixels.insert(pixels.end(), once.begin(), once.end());
    }
    checkConversion<int>(pixels);
}

TEST(ScalarFieldConversion, TakesOverItsOwnTypeAndLeavesOthers)
{
    auto field = filled<float>(2, 2, 1.9F);
    const auto data = field.GetSharedDataT();
    const auto converted = CastOrCreateScalarFieldCopyOfType<unsigned short>(std::move(field));
    EXPECT_THAT(converted, testing::Each(1));
    EXPECT_EQ(converted.GetScaleI(), kelvin);
    EXPECT_EQ(field.GetSharedDataT(), data);

    const auto taken = CastOrCreateScalarFieldCopyOfType<float>(std::move(field));
    EXPECT_EQ(taken.GetSharedDataT(), data);
    EXPECT_EQ(taken.GetScaleI(), kelvin);
    EXPECT_EQ(field.GetSharedDataT(), nullptr);
}

TEST(ScalarFieldConversion, SharesItsOwnTypeOrConverts)
{
    const std::shared_ptr<const ScalarFieldVariant> field =
        std::make_shared<ScalarField<int>>(filled<int>(2, 1, -300));
    EXPECT_EQ(CastOrCreateScalarFieldCopyOfType<int>(field), field);
    EXPECT_THAT(*CastOrCreateScalarFieldCopyOfType<unsigned char>(field), testing::Each(0));
    EXPECT_EQ(CastOrCreateScalarFieldCopyOfType<unsigned char>(field)->GetScaleI(), kelvin);
    EXPECT_TRUE(raises("Scalar field is null", [] {
        return CastOrCreateScalarFieldCopyOfType<int>(std::shared_ptr<const ScalarFieldVariant>());
    }));
}

TEST(ScalarFieldConversion, RefusesAnUnknownType)
{
    const QString text = "Unsupported scalar field type";
    const auto strange = std::make_shared<StrangeField>(2, 2);
    const std::shared_ptr<const ScalarFieldVariant> shared = strange;
    expectRaised<RTE::Exception>(
        {{text, [&] { return CreateScalarFieldCopyOfType<float>(*strange); }},
         {text, [&] { return CastOrCreateScalarFieldCopyOfType<float>(std::move(*strange)); }},
         {text, [&] { return CastOrCreateScalarFieldCopyOfType<float>(shared); }},
         {text, [&] { return GetSizeOfScalarField(*strange); }}});
    EXPECT_NE(strange->GetSharedDataT(), nullptr);
}

TEST(ScalarFieldAccess, SizeIsInBytes)
{
    EXPECT_EQ(GetSizeOfScalarField(filled(5, 3, 1.0)), 120U);
    EXPECT_EQ(GetSizeOfScalarFieldT(filled<unsigned char>(5, 3, 1)), 15U);
}

} // namespace
