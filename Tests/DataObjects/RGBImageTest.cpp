// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/RGBImage.h"

#include "Core/Common/AttributeNames.h"
#include "Core/DataObjects/LazyMask.h"
#include "Core/DataObjects/ScalarField.h"
#include "Tests/DataObjects/Companions.h"
#include "Tests/Support/EachTarget.h"
#include "Tests/Support/Raises.h"

#include <cmath>
#include <limits>
#include <numeric>
#include <random>
#include <thread>

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using Size = Math::Size2T<unsigned int>;
using Words = Image<unsigned short>;

const QString nullPointer = "data-pointer is null";
const QString invalidSizes = "Invalid sizes";

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

RGBImage fullImage(unsigned int width = 5, unsigned int height = 3)
{
    RGBImage image = randomImage(width, height);
    addCompanions(image);
    return image;
}

bool samePixels(const RGBImage& a, const RGBImage& b)
{
    return a.GetSize() == b.GetSize() && std::equal(a.begin(), a.end(), b.begin());
}

TEST(RGBImageTest, IsMadeOfValuesVectorsAndPackedColours)
{
    const RGBImage filled(3, 2, Rgb16(1, 2, 3), false);
    EXPECT_EQ(filled(2, 1), Rgb16(1, 2, 3));
    EXPECT_FALSE(AllValuesValid(filled));
    EXPECT_EQ(filled.GetScaleX(), defaultScales[0]);
    EXPECT_EQ(filled.GetScaleY(), defaultScales[1]);
    EXPECT_EQ(filled.GetScaleI(), defaultScales[3]);
    EXPECT_EQ(filled.GetScalarFields().GetSizeOfScalarFields(), Size(3, 2));

    const RGBImage copied({{1, 1, 1}, {2, 2, 2}, {3, 3, 3}, {4, 4, 4}, {5, 5, 5}, {6, 6, 6}}, 3, 2);
    EXPECT_EQ(copied(0, 1), Rgb16(4, 4, 4));
    EXPECT_EQ(copied[Math::Point2T<unsigned int>(2, 1)], Rgb16(6, 6, 6));
    EXPECT_TRUE(AllValuesValid(copied));

    const std::vector<unsigned int> packed{0x112233, 0xFFFF0102};
    const RGBImage unpacked(packed.data(), 1, 2);
    EXPECT_EQ(unpacked(0, 0), Rgb16(0x11, 0x22, 0x33));
    EXPECT_EQ(unpacked(0, 1), Rgb16(0xFFFF, 1, 2));

    const std::vector<Rgb16> five(5);
    // The larger size must not be asked of the memory.
    for (const Size& size : {Size(3, 2), Size(0xFFFFFFFFU, 0xFFFFFFFFU)}) {
        expectRaised({{invalidSizes, [&] { RGBImage(five, size); }},
                      {nullPointer, [&] { RGBImage(static_cast<const unsigned int*>(nullptr), size); }}});
    }
    const RGBImage deep(1, 1, Rgb16(0x0102, 0x0304, 0x0506), true);
    EXPECT_EQ(deep.GetPixelAsRGBQUAD(0, 0), (BufferApi::RgbQuad{0x06, 0x04, 0x02, 0})) << "the low bytes";
    EXPECT_TRUE(RGBImage(std::vector<Rgb16>(), 0, 7).empty());
    EXPECT_TRUE(RGBImage(static_cast<const unsigned int*>(nullptr), 0, 7).empty());
}

TEST(RGBImageTest, JoinsThreeImages)
{
    const auto channel = [](unsigned short first) {
        Words image(37, 3, true);
        std::iota(image.begin(), image.end(), first);
        addCompanions(image);
        image.ReplaceMaskStrategy(std::make_unique<LazyMask>(37, 3, true));
        return image;
    };
    Words r = channel(10);
    Words g = channel(1000);
    const Words b = channel(60000);
    r.SetMaskValid(1, 0, false);
    g.SetMaskValid(36, 2, false);
    g.GetAttributes().set("Number", 8);
    onEachTarget([&] {
        RGBImage image(r, g, b);
        for (unsigned int i = 0; i < image.size(); ++i) {
            ASSERT_EQ(image[i], Rgb16(r[i], g[i], b[i])) << i;
        }
        EXPECT_FALSE(image.IsMaskValid(1, 0));
        EXPECT_TRUE(image.GetScalarFields().empty());
        image.GetScalarFields().Add("Field", 1.5F);
        expectCompanions(image);
    });
    EXPECT_FALSE(b.IsMaskSpawned());
}

TEST(RGBImageTest, ChecksPixelsThenSizeThenXThenYThenI)
{
    const Words r(2, 2, 0, true);
    Words other(2, 3, 0, true);
    const auto refuses = [&](const QString& text) {
        expectRaised({{text, [&] { RGBImage(r, other, r); }}, {text, [&] { RGBImage(r, r, other); }}});
    };
    refuses("Size of the R/G/B frames aren't equal");
    other = Words(r);
    other.SetScaleI(scaleOf(2));
    refuses("I scale of the R/G/B frames aren't equal");
    other.SetScaleY(scaleOf(2));
    refuses("Y scale of the R/G/B frames aren't equal");
    other.SetScaleX(scaleOf(2));
    refuses("X scale of the R/G/B frames aren't equal");

    Words movedFrom(2, 3, 0, true);
    const Words target(std::move(movedFrom));
    Words released(2, 3, 0, true);
    const std::unique_ptr<unsigned short[]> pixels(released.GetImageData().ReleaseRawPointer());
    for (const Words* const hollow : {&movedFrom, &released}) {
        expectRaised({{nullPointer, [&] { RGBImage(*hollow, r, r); }},
                      {nullPointer, [&] { RGBImage(r, *hollow, r); }},
                      {nullPointer, [&] { RGBImage(r, r, *hollow); }}});
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
    assigned.GetScalarFields().Remove("Field");
    EXPECT_TRUE(samePixels(*created, image));
    expectCompanions(image);
}

TEST(RGBImageTest, MovedFromImagesAreEmpty)
{
    RGBImage source = fullImage();
    source.SetBitDepth(11);
    const auto field = source.GetScalarFields().Get("Field");
    RGBImage target(1, 1, Rgb16(), true);
    const auto* const fields = &target.GetScalarFields();
    target = std::move(source);
    EXPECT_TRUE(samePixels(target, fullImage()));
    EXPECT_EQ(target.GetBitDepth(), 11);
    expectCompanions(target);
    EXPECT_EQ(&target.GetScalarFields(), fields);
    EXPECT_EQ(target.GetScalarFields().Get("Field"), field);

    RGBImage moved(std::move(target));
    for (const RGBImage* const empty : {&source, &target}) {
        const RGBImage copy(*empty);
        EXPECT_EQ(copy.GetSize(), Size(0, 0));
        EXPECT_TRUE(copy.empty());
        EXPECT_TRUE(copy.GetAttributes().isEmpty());
        EXPECT_TRUE(copy.GetScalarFields().empty());
        EXPECT_EQ(copy.GetBitDepth(), 8);
        EXPECT_TRUE(empty->IntensityImage().empty());
        EXPECT_TRUE(raises(invalidSizes, [&] { moved += *empty; }));
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
    target.GetScalarFields().Add("Field", 1.5F);
    expectCompanions(target);

    RGBImage smaller(3, 5, Rgb16(9, 9, 9), true);
    EXPECT_TRUE(raises("Source RGB image has different size", [&] { smaller.DeepCopyFrom(source); }));
    EXPECT_EQ(smaller(0, 0), Rgb16(9, 9, 9));
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
    expectRaised({{invalidSizes, [&] { image += b; }}, {invalidSizes, [&] { image -= b; }}});
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
    const std::vector<std::pair<unsigned short, int>> depthsOfMaxima{
        {0, 8}, {1, 8}, {255, 8}, {256, 9}, {4095, 12}, {4096, 13}, {65535, 16}};
    for (const auto& [maximum, depth] : depthsOfMaxima) {
        RGBImage image(9, 9, Rgb16(), true);
        image(8, 8).green = maximum;
        EXPECT_EQ(image.GetBitDepth(), depth) << maximum;
    }
    EXPECT_EQ(RGBImage(std::vector<Rgb16>(), 0, 0).GetBitDepth(), 8);

    const std::vector<std::pair<AttributeValue, int>> depthsOfAttributes{
        {4095, 12},
        {QStringLiteral("16383.5"), 15},
        {1, 8},
        {1e30, 16},
        {QStringLiteral("unknown"), 8},
        {-5, 8},
        {std::numeric_limits<double>::quiet_NaN(), 8}};
    for (const auto& [maximum, depth] : depthsOfAttributes) {
        RGBImage image(2, 2, Rgb16(1000, 0, 0), true);
        image.GetAttributes().set(Attr::cameraMaxIntensity, maximum);
        EXPECT_EQ(image.GetBitDepth(), depth) << maximum.toStdString();
    }
}

TEST(RGBImageTest, BitDepthStaysOnceItIsKnown)
{
    RGBImage image(2, 2, Rgb16(200, 0, 0), true);
    image.InitBitDepth();
    image = Rgb16(60000, 0, 0);
    EXPECT_EQ(image.GetBitDepth(), 8);
    const QString text = "Bit depth must be between 8 and 16";
    expectRaised({{text, [&] { image.SetBitDepth(7); }}, {text, [&] { image.SetBitDepth(17); }}});
    for (const auto depth : {std::uint16_t{16}, std::uint16_t{8}}) {
        image.SetBitDepth(depth);
        EXPECT_EQ(image.GetBitDepth(), depth);
    }
}

TEST(RGBImageTest, ManyThreadsFindOutTheBitDepth)
{
    const RGBImage image(64, 64, Rgb16(1000, 0, 0), true);
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] { EXPECT_EQ(image.GetBitDepth(), 10); });
    }
}

unsigned short mapped(unsigned short component, double minimum, double maximum, double top)
{
    const double t = (component - minimum) / (maximum - minimum);
    return static_cast<unsigned short>(top * (t > 0 ? (t > 1 ? 1 : t) : 0));
}

TEST(RGBImageTest, AppliesColourRangesExactly)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    // Minimum, maximum, bit depth.
    const std::vector<std::tuple<double, double, unsigned short>> ranges{
        {0, 4095, 12},        {100, 1600, 12}, {0, 65535, 16},    {-300.25, 70000.5, 16}, {0.1, 0.7, 8},
        {1000, infinity, 10}, {3, 3000, 16},   {60000, 60001, 9}, {59999.5, 60000.2, 9},  {-5, -1, 8}};
    // Every component occurs; the first size is mapped as it is, the second by a table.
    for (const Size size : {Size(257, 85), Size(257, 340)}) {
        RGBImage image(size, Rgb16(), true);
        unsigned short* const words = &image[0ULL].red;
        for (unsigned int i = 0; i < 3 * image.size(); ++i) {
            words[i] = static_cast<unsigned short>(i * 7);
        }
        for (const auto& range : ranges) {
            onEachTarget([&] {
                const auto& [minimum, maximum, depth] = range;
                RGBImage result = image;
                result.SetBitDepth(depth);
                result.ApplyColorRange(minimum, maximum);
                const double top = std::exp2(depth) - 1;
                for (unsigned int i = 0; i < 3 * image.size(); ++i) {
                    ASSERT_EQ((&result[0ULL].red)[i], mapped(words[i], minimum, maximum, top))
                        << words[i] << " from " << minimum << " to " << maximum;
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
