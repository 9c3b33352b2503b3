// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/Image.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/DataObjects/AttributesContainer.h"
#include "Core/DataObjects/BufferAttributes.h"
#include "Core/DataObjects/LazyMask.h"
#include "Core/DataObjects/ScalarField.h"
#include "Tests/Support/AllTypes.h"
#include "Tests/Support/Allocations.h"
#include "Tests/Support/ImageFrames.h"
#include "Tests/Support/PixelTypeList.h"
#include "Tests/Support/Raises.h"
#include "Tests/Support/Scales.h"

#include <algorithm>
#include <numeric>
#include <thread>

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using Size = Math::Size2T<unsigned int>;

const QString differentSizes = "Source and destination have different sizes.";

FourScales scalesFrom(int first)
{
    return {scaleOf(first), scaleOf(first + 1), scaleOf(first + 2), scaleOf(first + 3)};
}

/// Numbered pixels; scales of factor `first` and on, an attribute and a scalar field of this value.
template <typename T>
void fillParts(Image<T>& image, int first)
{
    std::iota(image.begin(), image.end(), static_cast<T>(first));
    image.SetScaleX(scaleOf(first));
    image.SetScaleY(scaleOf(first + 1));
    image.SetScaleZ(scaleOf(first + 2));
    image.SetScaleI(scaleOf(first + 3));
    image.GetAttributes().set("First", first);
    image.GetScalarFields().Add("Field", static_cast<float>(first));
}

template <typename T>
Image<T> numbered(int first, const Size& size = {3, 2}, bool valid = true)
{
    Image<T> image(size, valid);
    fillParts(image, first);
    return image;
}

/// An image whose mask nobody asked for.
template <typename T>
Image<T> lazilyMasked(int first, bool initialise = true)
{
    Image<T> image(3, 2, true);
    fillParts(image, first);
    image.ReplaceMaskStrategy(std::make_unique<LazyMask>(3, 2, initialise));
    return image;
}

/// All but the pixels and the mask.
void expectParts(const ImageVariant& image, int first)
{
    EXPECT_EQ(scalesOf(image), scalesFrom(first));
    const auto attributes = image.GetAttributes().toStdVector();
    ASSERT_EQ(attributes.size(), 1U);
    EXPECT_EQ(attributes[0].value.value<int>(), first);
    ASSERT_EQ(image.GetScalarFields().GetNames(), QList<QString>{"Field"});
    const auto field = image.GetScalarFields().Get("Field");
    EXPECT_EQ(CastScalarFieldTo<float>(*field).GetPixel(2, 1), static_cast<float>(first));
}

/// An image that looks at pixels and parts of this object, as one on a frame does.
template <typename T>
struct Viewed
{
    std::vector<T> pixels = std::vector<T>(6);
    Size size = {3, 2};
    std::shared_ptr<Mask> mask = std::make_shared<Mask>(size, false);
    std::shared_ptr<Zt::LinearScale> x = std::make_shared<Zt::LinearScale>(scaleOf(10));
    std::shared_ptr<Zt::LinearScale> y = std::make_shared<Zt::LinearScale>(scaleOf(11));
    std::shared_ptr<Zt::LinearScale> z = std::make_shared<Zt::LinearScale>(scaleOf(12));
    std::shared_ptr<Zt::LinearScale> i = std::make_shared<Zt::LinearScale>(scaleOf(13));
    std::shared_ptr<Attributes> attributes = std::make_shared<AttributesContainer>();
    std::shared_ptr<ScalarFields> fields = std::make_shared<ScalarFields>(size);

    Image<T> image() { return {pixels.data(), size, mask, x, y, z, i, attributes, fields}; }
};

template <typename T>
class ImageTest : public testing::Test
{
};

TYPED_TEST_SUITE(ImageTest, PixelTypeList);

TYPED_TEST(ImageTest, NewImagesHaveDefaultParts)
{
    for (const bool valid : {true, false}) {
        const Image<TypeParam> image(4, 3, TypeParam{7}, valid);
        EXPECT_EQ(std::count(image.begin(), image.end(), TypeParam{7}), 12);
        EXPECT_EQ(scalesOf(image), defaultScales);
        EXPECT_TRUE(image.GetAttributes().isEmpty());
        EXPECT_EQ(image.GetScalarFields().GetSizeOfScalarFields(), Size(4, 3));
        EXPECT_EQ(static_cast<int>(image.GetDataType()), PixelTypes::number<TypeParam>);
        for (const Mask& mask : {image.GetMask(), Image<TypeParam>(Size(4, 3), valid).GetMask()}) {
            EXPECT_EQ(std::count(mask.begin(), mask.end(), valid), 12);
        }
    }
}

template <typename T>
void expectConverted(const ImageVariant& source)
{
    Image<T> target = numbered<T>(50);
    target.SetMaskValid(0, 0, false);
    target.GetAttributes().set("Old", 1);
    ImageVariant& untyped = target;
    untyped.Assign(source);
    EXPECT_EQ(target.GetPixel(0, 0), T{1});
    EXPECT_EQ(target.GetPixel(2, 1), T{6});
    EXPECT_TRUE(target.IsMaskValid(0, 0));
    EXPECT_FALSE(target.IsMaskValid(1, 1));
    expectParts(target, 1);
}

TEST(Image, IsAssignedToImagesOfEveryType)
{
    forAllPairs([]<typename From, typename To>(PixelTypes::Tag<From>, PixelTypes::Tag<To>) {
        auto source = numbered<From>(1);
        source.SetMaskValid(1, 1, false);
        expectConverted<To>(source);
    });
}

TYPED_TEST(ImageTest, CopiesShareNothing)
{
    Viewed<TypeParam> viewed;
    const Image<TypeParam> view = viewed.image();
    Image<TypeParam> copy(view);
    EXPECT_FALSE(view.GetImageData().HasOwnerShip());
    EXPECT_TRUE(copy.GetImageData().HasOwnerShip());
    EXPECT_FALSE(AllValuesValid(copy));
    fillParts(copy, 5);
    copy.GetMask().Fill(true);
    EXPECT_EQ(viewed.pixels, std::vector<TypeParam>(6));
    EXPECT_FALSE(AllValuesValid(*viewed.mask));
    EXPECT_EQ(scalesOf(view), scalesFrom(10));
    EXPECT_TRUE(view.GetAttributes().isEmpty());
    EXPECT_TRUE(view.GetScalarFields().empty());
}

TEST(Image, IsBuiltOfPixelsOfAnotherType)
{
    Image<float> source(2, 1, 300.9F, true);
    const Image<unsigned char> built(source.GetImageData(), Mask(2, 1, false));
    EXPECT_EQ(built(1, 0), 255);
    EXPECT_FALSE(built.IsMaskValid(0, 0));
}

TEST(Image, ConstructionTakesSharesOrViews)
{
    int pixels[6] = {};
    bool maskPixels[6] = {};
    Image<int> view(pixels, maskPixels, 3, 2);
    view.SetMaskValid(1, 0, true);
    view.SetMaskValid({0, 1}, true);
    view(2, 1) = 9;
    view.SetPixel({1, 0}, 20);
    EXPECT_TRUE(maskPixels[1] && maskPixels[3] && !maskPixels[2]);
    EXPECT_EQ(std::vector(pixels, pixels + 6), (std::vector{0, 20, 0, 0, 0, 9}));
    EXPECT_FALSE(view.GetImageData().HasOwnerShip());
    EXPECT_TRUE(Image<int>(new int[6], 3, 2, true, true).GetImageData().HasOwnerShip());

    auto block = std::make_unique<RTE::OwnedMemory>(24);
    const void* address = block->data();
    const Image<int> onBlock(std::move(block), std::make_unique<LazyMask>(3, 2, true), 3, 2);
    EXPECT_EQ(onBlock.GetRawPointer(), address);
    EXPECT_FALSE(onBlock.IsMaskSpawned());
    EXPECT_FALSE(onBlock.GetImageData().HasOwnerShip());

    ImageData<int> data(3, 2, 8);
    const int* moved = data.GetRawPointer();
    EXPECT_EQ(Image<int>(std::move(data), Mask(3, 2, false)).GetRawPointer(), moved);
    std::unique_ptr<ImageDataVariant> untyped = std::make_unique<ImageData<int>>(3, 2, 8);
    EXPECT_TRUE(AllValuesValid(Image<int>(std::move(*untyped))));

    const auto shared = std::make_shared<ImageData<int>>(3, 2, 8);
    const auto mask = std::make_shared<Mask>(3, 2, true);
    Image<int> sharing(shared, mask);
    EXPECT_EQ(sharing.GetImageDataSPtr(), shared);
    EXPECT_EQ(sharing.GetMaskSPtr(), mask);
}

TEST(Image, UnfitPartsAreRefusedAndLeftAlone)
{
    const QString badCast = "bad image data cast";
    const QString badMask = "Mask has invalid size.";
    const QString noMask = "Mask is not valid.";
    using Strategy = std::unique_ptr<MaskStrategy>;
    ImageData<int> data(3, 2, 8);
    ImageDataVariant& untyped = data;
    Mask small(2, 2, true);
    const auto shared = std::make_shared<ImageData<int>>(3, 2, 8);
    Image<int> image(3, 2, true);
    std::shared_ptr<Attributes> none;
    expectRaised({{badCast, [&] { Image<float>(std::move(untyped)); }},
                  {badCast, [&] { Image<float>(std::move(untyped), std::move(small)); }},
                  {badCast, [&] { Image<float>(std::move(untyped), Strategy()); }},
                  {badMask, [&] { Image<int>(std::move(untyped), std::move(small)); }},
                  {badMask, [&] { Image<int>(std::move(data), std::move(small)); }},
                  {badMask, [&] { Image<float>(untyped, small); }},
                  {noMask, [&] { Image<int>(std::move(untyped), Strategy()); }},
                  {badCast, [&] { Image<float>(shared, std::make_shared<Mask>(3, 2)); }},
                  {badMask, [&] { Image<int>(shared, std::make_shared<Mask>(3, 3)); }},
                  {noMask, [&] { Image<int>(shared, std::shared_ptr<Mask>()); }},
                  {noMask, [&] { image.ReplaceMaskStrategy(nullptr); }},
                  {"Attributes are not valid.", [&] { image.SwapAttributes(none); }},
                  {"ScaleY is not valid.", [&] {
                       image.SetSharedScales(image.GetScaleXShared(), nullptr, nullptr,
                                             image.GetScaleIShared());
                   }}});
    EXPECT_EQ(data.size(), 6U);
    EXPECT_EQ(small.size(), 4U);
}

TEST(Image, ViewsAreCheckedInOrder)
{
    Viewed<int> good;
    Viewed<int> parts;
    parts.mask = nullptr;
    parts.x = parts.y = parts.z = parts.i = nullptr;
    parts.attributes = nullptr;
    parts.fields = nullptr;
    const std::vector<Failure> failureAndRepair = {
        {"Mask is not valid.", [&] { parts.mask = std::make_shared<Mask>(2, 3, true); }},
        {"Mask has invalid size.", [&] { parts.mask = good.mask; }},
        {"ScaleX is not valid.", [&] { parts.x = good.x; }},
        {"ScaleY is not valid.", [&] { parts.y = good.y; }},
        {"ScaleZ is not valid.", [&] { parts.z = good.z; }},
        {"ScaleI is not valid.", [&] { parts.i = good.i; }},
        {"Attributes are not valid.", [&] { parts.attributes = good.attributes; }},
        {"Scalar fields are not valid.", [&] { parts.fields = std::make_shared<ScalarFields>(2, 3); }},
        {"Sizes of scalar fields is different to image size.", [&] { parts.fields = good.fields; }}};
    for (const auto& [text, repair] : failureAndRepair) {
        EXPECT_TRUE(raises(text, [&] { parts.image(); }));
        repair();
    }
    EXPECT_EQ(parts.image().GetRawPointer(), parts.pixels.data());
}

TEST(Image, AssignmentPassesValuesOnToAllThatShare)
{
    Viewed<int> viewed;
    Image<int> view = viewed.image();
    viewed.attributes->set("Old", 1);
    viewed.fields->Add("Old");
    const auto source = numbered<int>(1);
    view = source;
    EXPECT_EQ(viewed.pixels, (std::vector<int>{1, 2, 3, 4, 5, 6}));
    EXPECT_TRUE(AllValuesValid(*viewed.mask));
    EXPECT_EQ(*viewed.i, scaleOf(4));
    EXPECT_FALSE(viewed.attributes->contains("Old"));
    expectParts(viewed.image(), 1);

    view.SetAttributes(numbered<int>(7).GetAttributes());
    EXPECT_EQ(viewed.attributes->attributeValue("First").value<int>(), 7);
}

TEST(Image, AWrongSizeLeavesEverythingAsItWas)
{
    auto image = numbered<int>(1);
    image.SetMaskValid(0, 0, false);
    Viewed<int> viewed;
    auto view = viewed.image();
    auto wide = numbered<int>(9, {2, 3});
    expectRaised({{differentSizes, [&] { image = std::as_const(wide); }},
                  {differentSizes,
                   [&] {
                       image.Assign(numbered<float>(9, {2, 3}));
                   }},
                  {"Mismatching image sizes", [&] { return image / wide; }},
                  {differentSizes, [&] { view = std::move(wide); }}});
    EXPECT_EQ(image(2, 1), 6);
    EXPECT_FALSE(image.IsMaskValid(0, 0));
    expectParts(image, 1);
    expectParts(wide, 9);
    EXPECT_EQ(*viewed.x, scaleOf(10));
}

TEST(Image, AMaskThatNobodyAskedForStaysLazyInCopies)
{
    const auto source = lazilyMasked<unsigned short>(1, false);
    std::unique_ptr<ImageVariant> copy;
    const auto lazily = allocationsDuring([&] { copy = source.CreateCopy(); });
    EXPECT_FALSE(source.IsMaskSpawned());
    EXPECT_FALSE(copy->IsMaskSpawned());
    EXPECT_TRUE(AllValuesValid(*copy));
    EXPECT_FALSE(source.IsMaskSpawned());

    const auto spawned = numbered<unsigned short>(1);
    const auto withMask = allocationsDuring([&] { copy = spawned.CreateCopy(); });
    EXPECT_EQ(withMask, lazily + 2) << "the mask and its pixels";
}

TEST(Image, MasksAreAssignedByWhatIsSpawned)
{
    const auto lazySource = lazilyMasked<int>(1);
    auto spawnedSource = numbered<int>(1);
    spawnedSource.SetMaskValid(1, 1, false);

    auto spawned = numbered<int>(5, {3, 2}, false);
    spawned = lazySource;
    EXPECT_TRUE(AllValuesValid(spawned));
    EXPECT_FALSE(lazySource.IsMaskSpawned());

    auto lazy = lazilyMasked<int>(5, false);
    lazy = lazySource;
    EXPECT_FALSE(lazy.IsMaskSpawned());
    EXPECT_TRUE(AllValuesValid(lazy));
    EXPECT_TRUE(lazy.IsMaskSpawned());

    auto lazyAgain = lazilyMasked<int>(5, false);
    lazyAgain = spawnedSource;
    EXPECT_FALSE(lazyAgain.IsMaskValid(1, 1));
    EXPECT_EQ(std::count(lazyAgain.GetMask().begin(), lazyAgain.GetMask().end(), true), 5);
}

TEST(Image, AssignmentToItselfAndToItsPartsChangesNothing)
{
    auto image = numbered<int>(1);
    Image<int>& same = image;
    image = same;
    image = std::move(same);
    image.Assign(same);
    image.SetAttributes(image.GetAttributes());
    image.SetScaleX(image.GetScaleX());
    EXPECT_EQ(image(2, 1), 6);
    expectParts(image, 1);

    Viewed<int> viewed;
    auto view = viewed.image();
    fillParts(view, 3);
    auto sharesAll = viewed.image();
    view = sharesAll;
    view = std::move(sharesAll);
    EXPECT_EQ(viewed.pixels[5], 8);
    expectParts(view, 3);
}

TEST(Image, TwoViewsOfOneFrameKeepItsAttributes)
{
    const auto frame = newFrame(BufferApi::DT_INT32, 3, 2);
    Viewed<int> viewed;
    viewed.attributes = std::make_shared<BufferAttributes>(*frame);
    auto first = viewed.image();
    viewed.attributes = std::make_shared<BufferAttributes>(*frame);
    auto second = viewed.image();
    first = std::as_const(second);
    fillParts(second, 4);
    second.SetAttributes(first.GetAttributes());
    first.Assign(second);
    expectParts(first, 4);
    expectParts(Image<int>(first), 4);
}

TEST(Image, AnOwnerTakesAllPartsByMove)
{
    for (const Size size : {Size(3, 2), Size(4, 4)}) {
        auto target = numbered<int>(50);
        auto source = numbered<int>(1, size);
        source.SetMaskValid(1, 1, false);
        const auto* mask = &source.GetMask();
        const int* pixels = source.GetRawPointer();
        const auto scale = source.GetScaleXShared();
        EXPECT_EQ(allocationsDuring([&] { target = std::move(source); }), 0U);
        EXPECT_EQ(target.GetRawPointer(), pixels);
        EXPECT_EQ(&target.GetMask(), mask) << "mask strategies are exchanged";
        EXPECT_EQ(target.GetScaleXShared(), scale);
        expectParts(target, 1);
    }
}

TEST(Image, AnOwnerWithoutAnOwnMaskTakesTheValuesOfTheMask)
{
    for (const bool isSpawned : {true, false}) {
        auto sameSize = lazilyMasked<int>(50);
        auto source = isSpawned ? numbered<int>(1) : lazilyMasked<int>(1);
        sameSize = std::move(source);
        EXPECT_EQ(sameSize.IsMaskSpawned(), isSpawned);
        expectParts(sameSize, 1);
    }
    auto otherSize = lazilyMasked<int>(50);
    auto source = numbered<int>(1, {4, 4});
    source.SetMaskValid(3, 3, false);
    otherSize.MoveFrom(std::move(source));
    EXPECT_EQ(otherSize.GetMask().GetSize(), Size(4, 4));
    EXPECT_FALSE(otherSize.IsMaskValid(3, 3));
    EXPECT_TRUE(otherSize.IsMaskSpawned());
}

TEST(Image, AnOwnerThatIsAssignedAViewOfItselfKeepsItsPixelsAndMask)
{
    auto image = numbered<int>(1);
    image.SetMaskValid(0, 1, false);
    {
        Image<int> lowerRow(image.GetRawPointer() + 3, image.GetMask().GetRawPointer() + 3, 3, 1);
        image = std::move(lowerRow);
    }
    EXPECT_TRUE(image.GetImageData().HasOwnerShip());
    EXPECT_EQ(image.GetSize(), Size(3, 1));
    EXPECT_EQ(image(0, 0), 4);
    EXPECT_EQ(image.GetMask().GetSize(), Size(3, 1));
    EXPECT_FALSE(image.IsMaskValid(0, 0));
    EXPECT_TRUE(image.IsMaskValid(2, 0));

    std::vector<int> foreign(3, 7);
    image = Image<int>(foreign.data(), 3, 1, false, true);
    EXPECT_EQ(image.GetRawPointer(), foreign.data()) << "it becomes a view of what is not its own";
}

TEST(Image, AViewCopiesWhatIsMovedIntoIt)
{
    Viewed<int> viewed;
    bool maskPixels[6] = {};
    viewed.mask = std::make_shared<Mask>(maskPixels, Size(3, 2), false);
    auto view = viewed.image();
    auto source = numbered<int>(1);
    source.SetMaskValid(2, 1, false);
    view = std::move(source);
    EXPECT_EQ(viewed.pixels, (std::vector<int>{1, 2, 3, 4, 5, 6}));
    EXPECT_TRUE(maskPixels[0]);
    EXPECT_FALSE(maskPixels[5]);
    EXPECT_EQ(*viewed.x, scaleOf(1));
    expectParts(view, 1);
    expectParts(source, 1);
    EXPECT_EQ(source(2, 1), 6);
    EXPECT_FALSE(source.IsMaskValid(2, 1));
}

TEST(Image, AViewWithAnOwnMaskExchangesIt)
{
    Viewed<int> viewed;
    auto view = viewed.image();
    auto source = numbered<int>(1);
    const auto mask = source.GetMaskSPtr();
    view = std::move(source);
    EXPECT_EQ(view.GetMaskSPtr(), mask);
    EXPECT_EQ(source.GetMaskSPtr(), viewed.mask);
}

TEST(Image, AMovedFromImageIsRebuiltByAssignment)
{
    const auto good = lazilyMasked<int>(1);
    const auto converted = numbered<float>(1);
    const std::vector<std::function<void(Image<int>&)>> assignments = {
        [&](Image<int>& image) { image = good; }, [&](Image<int>& image) { image = Image<int>(good); },
        [&](Image<int>& image) { image.Assign(converted); }};
    for (const auto& assign : assignments) {
        Image<int> byConstruction = numbered<int>(50);
        const Image<int> destroyed(std::move(byConstruction));
        Image<int> byAssignment = numbered<int>(50);
        Image<int> taker(1, 1, true);
        taker = std::move(byAssignment);
        for (Image<int>* movedFrom : {&byConstruction, &byAssignment}) {
            assign(*movedFrom);
            EXPECT_EQ(movedFrom->GetPixel(2, 1), 6);
            EXPECT_TRUE(AllValuesValid(*movedFrom));
            expectParts(*movedFrom, 1);
        }
    }
    Image<int> first = numbered<int>(1);
    Image<int> second(std::move(first));
    std::swap(first, second);
    std::swap(first, second);
    expectParts(second, 1);
}

TEST(Image, ArithmeticTouchesThePixelsOnly)
{
    auto image = numbered<unsigned short>(1);
    image.SetMaskValid(2, 1, false);
    const auto check = [](const Image<unsigned short>& result, int pixel) {
        EXPECT_EQ(result(2, 1), pixel);
        EXPECT_FALSE(result.IsMaskValid(2, 1));
        expectParts(result, 1);
    };
    check(image * 2.0, 12);
    check(image + 10.0, 16);
    check(image - 100.0, 0);
    check(image / 2.0, 3);
    image *= 3.0;
    image += 2.0;
    image /= 4.0;
    image -= 1.0;
    check(image, 4);
    image = static_cast<unsigned short>(9);
    check(image, 9);
}

TEST(Image, AQuotientIsValidWhereBothAre)
{
    auto left = numbered<int>(10);
    auto right = numbered<int>(1);
    left.SetMaskValid(0, 0, false);
    right.SetMaskValid(2, 1, false);
    const auto quotient = left / right;
    EXPECT_EQ(quotient(1, 0), 5);
    EXPECT_EQ(std::count(quotient.GetMask().begin(), quotient.GetMask().end(), false), 2);
    EXPECT_FALSE(quotient.IsMaskValid(0, 0));
    EXPECT_TRUE(left.IsMaskValid(2, 1));
    expectParts(quotient, 10);

    const auto lazy = lazilyMasked<int>(1) / lazilyMasked<int>(1);
    EXPECT_FALSE(lazy.IsMaskSpawned());
}

TEST(Image, SharedScalesAndAttributesAreExchangedNotCopied)
{
    auto first = numbered<int>(1);
    auto second = numbered<int>(5);
    second.SetSharedScales(first.GetScaleXShared(), first.GetScaleYShared(), first.GetScaleZShared(),
                           first.GetScaleIShared());
    second.SetScaleI(scaleOf(99));
    EXPECT_EQ(first.GetScaleI(), scaleOf(99));

    auto attributes = first.GetAttributesSPtr();
    const auto old = second.GetAttributesSPtr();
    second.SwapAttributes(attributes);
    EXPECT_EQ(attributes, old);
    second.SetAttributes(first.GetAttributes());
    EXPECT_EQ(first.GetAttributes().attributeValue("First").value<int>(), 1);
}

TEST(Image, AMaskReadByManyThreadsIsMadeOnce)
{
    for (int round = 0; round < 50; ++round) {
        const auto image = lazilyMasked<unsigned char>(1);
        std::vector<const Mask*> seen(4);
        std::vector<std::jthread> threads;
        for (auto& mask : seen) {
            threads.emplace_back(
                [&image, &mask] { mask = image.IsMaskValid(2, 1) ? &image.GetMask() : nullptr; });
        }
        threads.clear();
        EXPECT_EQ(seen, std::vector<const Mask*>(4, &image.GetMask()));
    }
}

} // namespace
