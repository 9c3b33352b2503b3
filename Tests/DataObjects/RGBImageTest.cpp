// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/RGBImage.h"

#include "Core/Common/AttributeNames.h"
#include "Core/DataObjects/LazyMask.h"
#include "Core/DataObjects/ScalarField.h"
#include "Tests/Support/EachTarget.h"
#include "Tests/Support/Raises.h"

#include <cmath>
#include <limits>
#include <random>
#include <thread>

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using Size = Math::Size2T<unsigned int>;
using Words = Image<unsigned short>;

const Zt::LinearScale scaleX(0.5, 1.0, "mm", "X");
const Zt::LinearScale scaleY(0.25, 2.0, "mm", "Y");
const Zt::LinearScale scaleI(3.0, 4.0, "counts", "I");
const QString fieldName = "Field";

RGBImage randomImage(unsigned int width, unsigned int height, unsigned int limit = 0xFFFF)
{
    RGBImage image(width, height, Rgb16(), true);
    std::mt19937 generator(width + height);
    const auto next = [&] { return static_cast<unsigned short>(generator() % (limit + 1)); };
    for (Rgb16& pixel : image) {
        pixel = Rgb16(next(), next(), next());
    }
    return image;
}

/// Its last pixel is invalid, and its companions are not those of a new image.
RGBImage fullImage(unsigned int width = 5, unsigned int height = 3)
{
    RGBImage image = randomImage(width, height);
    image.GetMask().SetValid(width - 1, height - 1, false);
    image.GetScaleX() = scaleX;
    image.GetScaleY() = scaleY;
    image.GetScaleI() = scaleI;
    image.GetAttributes().set("Number", 7);
    image.GetScalarFields().Add(fieldName, 1.5F);
    return image;
}

/// Mask, scales, attributes and scalar fields are those of fullImage.
template <typename AnyImage>
void expectCompanions(const AnyImage& image)
{
    EXPECT_FALSE(image.IsMaskValid(image.GetWidth() - 1, image.GetHeight() - 1));
    EXPECT_TRUE(image.IsMaskValid(0, 0));
    EXPECT_EQ(image.GetScaleX(), scaleX);
    EXPECT_EQ(image.GetScaleY(), scaleY);
    EXPECT_EQ(image.GetScaleI(), scaleI);
    EXPECT_EQ(image.GetAttributes().attributeValue("Number").template value<int>(), 7);
    const auto field = image.GetScalarFields().Get(fieldName);
    EXPECT_EQ(CastScalarFieldTo<float>(*field).GetPixel(0, 0), 1.5F);
}

bool samePixels(const RGBImage& a, const RGBImage& b)
{
    return a.GetSize() == b.GetSize() && std::equal(a.begin(), a.end(), b.begin());
}

TEST(RGBImageTest, IsMadeOfValuesVectorsAndPackedColours)
{
    const RGBImage filled(3, 2, Rgb16(1, 2, 3), false);
    EXPECT_EQ(filled.GetSize(), Size(3, 2));
    EXPECT_EQ(filled(2, 1), Rgb16(1, 2, 3));
    EXPECT_FALSE(AllValuesValid(filled));
    EXPECT_EQ(filled.GetScaleX(), Zt::LinearScale(Zt::ScalePreset::X));
    EXPECT_EQ(filled.GetScaleY(), Zt::LinearScale(Zt::ScalePreset::Y));
    EXPECT_EQ(filled.GetScaleI(), Zt::LinearScale(Zt::ScalePreset::I));
    EXPECT_EQ(filled.GetScalarFields().GetSizeOfScalarFields(), Size(3, 2));

    const RGBImage copied({{1, 1, 1}, {2, 2, 2}, {3, 3, 3}, {4, 4, 4}, {5, 5, 5}, {6, 6, 6}}, 3, 2);
    EXPECT_EQ(copied(0, 1), Rgb16(4, 4, 4));
    EXPECT_EQ(copied[Math::Point2T<unsigned int>(2, 1)], Rgb16(6, 6, 6));
    EXPECT_EQ(copied[2ULL], Rgb16(3, 3, 3));
    EXPECT_TRUE(AllValuesValid(copied));

    const std::vector<unsigned int> packed{0x112233, 0xFFFF0102};
    const RGBImage unpacked(packed.data(), 1, 2);
    EXPECT_EQ(unpacked(0, 0), Rgb16(0x11, 0x22, 0x33));
    EXPECT_EQ(unpacked(0, 1), Rgb16(0xFFFF, 1, 2));

    const std::vector<Rgb16> five(5);
    // The larger size must not be asked of the memory.
    for (const Size& size : {Size(3, 2), Size(0xFFFFFFFFU, 0xFFFFFFFFU)}) {
        EXPECT_TRUE(raises("Invalid sizes", [&] { RGBImage(five, size); }));
        EXPECT_TRUE(raises("data-pointer is null",
                           [&] { RGBImage(static_cast<const unsigned int*>(nullptr), size); }));
    }
    EXPECT_TRUE(RGBImage(std::vector<Rgb16>(), 0, 7).empty());
}

TEST(RGBImageTest, JoinsThreeImages)
{
    const auto channel = [](unsigned short first) {
        Words image(37, 3, true);
        for (unsigned short& pixel : image) {
            pixel = first++;
        }
        image.ReplaceMaskStrategy(std::make_unique<LazyMask>(37, 3, true));
        image.SetScaleX(scaleX);
        image.SetScaleY(scaleY);
        image.SetScaleI(scaleI);
        return image;
    };
    Words r = channel(10);
    Words g = channel(1000);
    const Words b = channel(60000);
    r.GetAttributes().set("Number", 7);
    r.SetMaskValid(1, 0, false);
    g.SetMaskValid(2, 0, false);
    g.GetAttributes().set("Number", 8);
    onEachTarget([&] {
        const RGBImage image(r, g, b);
        for (unsigned int i = 0; i < image.size(); ++i) {
            ASSERT_EQ(image[i], Rgb16(r[i], g[i], b[i])) << i;
        }
        EXPECT_EQ(image.GetScaleX(), scaleX);
        EXPECT_EQ(image.GetScaleY(), scaleY);
        EXPECT_EQ(image.GetScaleI(), scaleI);
        EXPECT_EQ(image.GetAttributes().attributeValue("Number").value<int>(), 7);
        EXPECT_TRUE(image.IsMaskValid(0, 0));
        EXPECT_FALSE(image.IsMaskValid(1, 0));
        EXPECT_FALSE(image.IsMaskValid(2, 0));
    });
    EXPECT_FALSE(b.IsMaskSpawned());
}

TEST(RGBImageTest, ChecksSizeThenXThenYThenI)
{
    const Words r(2, 2, 0, true);
    Words other(2, 2, 0, true);
    const Words larger(2, 3, 0, true);
    const auto refuses = [&](const QString& text) {
        EXPECT_TRUE(raises(text, [&] { RGBImage(r, other, r); }));
        EXPECT_TRUE(raises(text, [&] { RGBImage(r, r, other); }));
    };
    EXPECT_TRUE(raises("Size of the R/G/B frames aren't equal", [&] { RGBImage(r, r, larger); }));
    EXPECT_TRUE(raises("Size of the R/G/B frames aren't equal", [&] { RGBImage(r, larger, r); }));
    other.SetScaleI(scaleI);
    refuses("I scale of the R/G/B frames aren't equal");
    other.SetScaleY(scaleY);
    refuses("Y scale of the R/G/B frames aren't equal");
    other.SetScaleX(scaleX);
    refuses("X scale of the R/G/B frames aren't equal");
}

TEST(RGBImageTest, ChannelsWithoutPixelsAreRefused)
{
    const Words whole(3, 2, 1, true);
    Words movedFrom(whole);
    const Words target(std::move(movedFrom));
    Words released(whole);
    const std::unique_ptr<unsigned short[]> pixels(released.GetImageData().ReleaseRawPointer());
    for (const Words* const hollow : {&movedFrom, &released}) {
        const QString text = "data-pointer is null";
        EXPECT_TRUE(raises(text, [&] { RGBImage(*hollow, whole, whole); }));
        EXPECT_TRUE(raises(text, [&] { RGBImage(whole, *hollow, whole); }));
        EXPECT_TRUE(raises(text, [&] { RGBImage(whole, whole, *hollow); }));
    }
}

TEST(RGBImageTest, CopiesAreDeepAndOfAnySize)
{
    RGBImage image = fullImage();
    image.SetBitDepth(11);
    RGBImage assigned(1, 1, Rgb16(), true);
    assigned = image;
    const std::unique_ptr<RGBImage> created = image.CreateCopy();
    RGBImage source(image);
    const RGBImage moved(std::move(source));
    for (const RGBImage* const copy :
         {static_cast<const RGBImage*>(&assigned), static_cast<const RGBImage*>(created.get()), &moved}) {
        EXPECT_TRUE(samePixels(*copy, image));
        EXPECT_EQ(copy->GetBitDepth(), 11);
        expectCompanions(*copy);
    }
    assigned(0, 0) += Rgb16(1, 1, 1);
    assigned.GetAttributes().set("Number", 8);
    assigned.GetScalarFields().Remove(fieldName);
    EXPECT_TRUE(samePixels(*created, image));
    expectCompanions(image);
}

TEST(RGBImageTest, MovedFromImagesAreEmpty)
{
    RGBImage source = fullImage();
    source.SetBitDepth(11);
    const auto field = source.GetScalarFields().Get(fieldName);
    RGBImage target(1, 1, Rgb16(), true);
    const auto* const fields = &target.GetScalarFields();
    target = std::move(source);
    EXPECT_TRUE(samePixels(target, fullImage()));
    EXPECT_EQ(target.GetBitDepth(), 11);
    expectCompanions(target);
    EXPECT_EQ(&target.GetScalarFields(), fields);
    EXPECT_EQ(target.GetScalarFields().Get(fieldName), field);

    RGBImage moved(std::move(target));
    for (const RGBImage* const empty : {&source, &target}) {
        const RGBImage copy(*empty);
        EXPECT_EQ(copy.GetSize(), Size(0, 0));
        EXPECT_TRUE(copy.empty());
        EXPECT_TRUE(copy.GetAttributes().isEmpty());
        EXPECT_TRUE(copy.GetScalarFields().empty());
        EXPECT_EQ(copy.GetBitDepth(), 8);
        EXPECT_TRUE(empty->IntensityImage().empty());
        EXPECT_TRUE(raises("Invalid sizes", [&] { moved += *empty; }));
    }
    RGBImage& self = moved;
    moved = std::move(self);
    EXPECT_TRUE(samePixels(moved, fullImage()));
    source = moved;
    expectCompanions(source);
}

TEST(RGBImageTest, DeepCopyFromKeepsBitDepthAndScalarFields)
{
    const RGBImage source = fullImage();
    RGBImage target(5, 3, Rgb16(1, 1, 1), true);
    target.SetBitDepth(9);
    target.GetAttributes().set("Old", 1);
    target.DeepCopyFrom(source);
    EXPECT_TRUE(samePixels(target, source));
    EXPECT_FALSE(target.GetAttributes().contains("Old"));
    EXPECT_EQ(target.GetBitDepth(), 9);
    EXPECT_TRUE(target.GetScalarFields().empty());
    target.GetScalarFields().Add(fieldName, 1.5F);
    expectCompanions(target);

    RGBImage smaller(3, 5, Rgb16(9, 9, 9), true);
    EXPECT_TRUE(raises("Source RGB image has different size", [&] { smaller.DeepCopyFrom(source); }));
    EXPECT_EQ(smaller(0, 0), Rgb16(9, 9, 9));
}

TEST(RGBImageTest, QuadsTakeTheLowBytes)
{
    RGBImage image(1, 2, Rgb16(), true);
    image(0, 1) = Rgb16(0x0102, 0x0304, 0x0506);
    EXPECT_EQ(image.GetPixelAsRGBQUAD(0, 1), (BufferApi::RgbQuad{0x06, 0x04, 0x02, 0}));
}

TEST(RGBImageTest, ComputesPixelByPixel)
{
    const RGBImage a = randomImage(61, 41);
    const RGBImage b = randomImage(41, 61);
    const Rgb16 value(300, 0, 40000);
    onEachTarget([&] {
        RGBImage sum = a;
        RGBImage difference = a;
        RGBImage raised = a;
        RGBImage lowered = a;
        const RGBImage other({b.begin(), b.end()}, a.GetSize());
        sum += other;
        difference -= other;
        raised += value;
        lowered -= value;
        for (unsigned int i = 0; i < a.size(); ++i) {
            ASSERT_EQ(sum[i], a[i] + b[i]) << i;
            ASSERT_EQ(difference[i], a[i] - b[i]) << i;
            ASSERT_EQ(raised[i], a[i] + value) << i;
            ASSERT_EQ(lowered[i], a[i] - value) << i;
        }
        sum -= sum;
        EXPECT_EQ(sum(60, 40), Rgb16());
    });
    RGBImage image = a;
    EXPECT_TRUE(raises("Invalid sizes", [&] { image += b; }));
    EXPECT_TRUE(raises("Invalid sizes", [&] { image -= b; }));
    EXPECT_TRUE(samePixels(image, a));
    image = image(60, 40);
    EXPECT_EQ(image(0, 0), a(60, 40));
}

TEST(RGBImageTest, GivesItsChannels)
{
    const RGBImage image = fullImage(67, 3);
    onEachTarget([&] {
        const Words red = image.RedImage();
        const Words green = image.GreenImage();
        const Words blue = image.BlueImage();
        const Image<float> intensity = image.IntensityImage();
        for (unsigned int i = 0; i < image.size(); ++i) {
            ASSERT_EQ(Rgb16(red[i], green[i], blue[i]), image[i]) << i;
            ASSERT_EQ(intensity[i], image[i].Intensity()) << i;
        }
        expectCompanions(red);
        expectCompanions(green);
        expectCompanions(blue);
        expectCompanions(intensity);
    });
}

TEST(RGBImageTest, IntensitiesOfAllSumsAreRoundedOnce)
{
    RGBImage image(3 * 0x10000 / 2, 2, Rgb16(), true);
    for (unsigned int sum = 0; sum <= 3 * 0xFFFF; ++sum) {
        const auto least = static_cast<unsigned short>(sum / 3);
        const auto middle = static_cast<unsigned short>((sum + 1) / 3);
        image[sum] = Rgb16(least, middle, static_cast<unsigned short>(sum - least - middle));
    }
    onEachTarget([&] {
        const Image<float> intensity = image.IntensityImage();
        for (unsigned int sum = 0; sum <= 3 * 0xFFFF; ++sum) {
            ASSERT_EQ(intensity[sum], static_cast<float>(sum / 3.0)) << sum;
        }
    });
}

TEST(RGBImageTest, FindsOutItsBitDepth)
{
    const auto depthOf = [](unsigned short maximum) {
        RGBImage image(9, 9, Rgb16(), true);
        image(8, 8).green = maximum;
        return image.GetBitDepth();
    };
    EXPECT_EQ(depthOf(0), 8);
    EXPECT_EQ(depthOf(1), 8);
    EXPECT_EQ(depthOf(255), 8);
    EXPECT_EQ(depthOf(256), 9);
    EXPECT_EQ(depthOf(4095), 12);
    EXPECT_EQ(depthOf(4096), 13);
    EXPECT_EQ(depthOf(65535), 16);
    EXPECT_EQ(RGBImage(std::vector<Rgb16>(), 0, 0).GetBitDepth(), 8);

    const auto depthWith = [](const AttributeValue& value) {
        RGBImage image(2, 2, Rgb16(1000, 0, 0), true);
        image.GetAttributes().set(Attr::cameraMaxIntensity, value);
        return image.GetBitDepth();
    };
    EXPECT_EQ(depthWith(4095), 12);
    EXPECT_EQ(depthWith("16383.5"), 15);
    EXPECT_EQ(depthWith(1), 8);
    EXPECT_EQ(depthWith(1e30), 16);
    EXPECT_EQ(depthWith("unknown"), 8);
    EXPECT_EQ(depthWith(-5), 8);
    EXPECT_EQ(depthWith(std::numeric_limits<double>::quiet_NaN()), 8);
}

TEST(RGBImageTest, BitDepthStaysOnceItIsKnown)
{
    RGBImage image(2, 2, Rgb16(200, 0, 0), true);
    image.InitBitDepth();
    image = Rgb16(60000, 0, 0);
    EXPECT_EQ(image.GetBitDepth(), 8);
    const QString text = "Bit depth must be between 8 and 16";
    EXPECT_TRUE(raises(text, [&] { image.SetBitDepth(7); }));
    EXPECT_TRUE(raises(text, [&] { image.SetBitDepth(17); }));
    image.SetBitDepth(16);
    EXPECT_EQ(image.GetBitDepth(), 16);
    image.SetBitDepth(8);
    EXPECT_EQ(image.GetBitDepth(), 8);
}

TEST(RGBImageTest, ManyThreadsFindOutTheBitDepth)
{
    const RGBImage image(64, 64, Rgb16(1000, 0, 0), true);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] { EXPECT_EQ(image.GetBitDepth(), 10); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

unsigned short mapped(unsigned short component, double minimum, double maximum, double top)
{
    const double t = (component - minimum) / (maximum - minimum);
    return static_cast<unsigned short>(top * (t > 0 ? (t > 1 ? 1 : t) : 0));
}

TEST(RGBImageTest, AppliesColourRangesExactly)
{
    struct Range
    {
        double minimum;
        double maximum;
        unsigned short depth;
    };
    constexpr double infinity = std::numeric_limits<double>::infinity();
    // Every component occurs; the first size is mapped as it is, the second by a table.
    for (const Size size : {Size(257, 85), Size(257, 340)}) {
        RGBImage image(size, Rgb16(), true);
        unsigned short* const words = &image[0ULL].red;
        for (unsigned int i = 0; i < 3 * image.size(); ++i) {
            words[i] = static_cast<unsigned short>(i * 7);
        }
        for (const Range& range : {Range{0, 4095, 12},
                                   {100, 1600, 12},
                                   {0, 65535, 16},
                                   {-300.25, 70000.5, 16},
                                   {0.1, 0.7, 8},
                                   {1000, infinity, 10},
                                   {3, 3000, 16},
                                   {60000, 60001, 9},
                                   {59999.5, 60000.2, 9},
                                   {-5, -1, 8}}) {
            onEachTarget([&] {
                RGBImage result = image;
                result.SetBitDepth(range.depth);
                result.ApplyColorRange(range.minimum, range.maximum);
                const double top = std::exp2(range.depth) - 1;
                for (unsigned int i = 0; i < 3 * image.size(); ++i) {
                    ASSERT_EQ((&result[0ULL].red)[i], mapped(words[i], range.minimum, range.maximum, top))
                        << words[i] << " from " << range.minimum << " to " << range.maximum;
                }
            });
        }
    }
}

TEST(RGBImageTest, EmptyColourRangesChangeNothing)
{
    const RGBImage image = randomImage(4, 4);
    RGBImage result = image;
    result.ApplyColorRange(10, 10);
    result.ApplyColorRange(20, 10);
    result.ApplyColorRange(std::numeric_limits<double>::quiet_NaN(), 10);
    EXPECT_TRUE(samePixels(result, image));

    RGBImage empty(std::vector<Rgb16>(), 0, 0);
    empty.ApplyColorRange(0, 10);
    empty += Rgb16(1, 1, 1);
    EXPECT_TRUE(empty.IntensityImage().empty());
    EXPECT_TRUE(empty.RedImage().empty());

    RGBImage unknown(2, 2, Rgb16(1000, 500, 0), true);
    unknown.ApplyColorRange(0, 1000);
    EXPECT_EQ(unknown(1, 1), Rgb16(1023, 511, 0));
}

} // namespace
