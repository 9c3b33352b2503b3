// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/BayerTransformer.h"

#include "Core/Common/AttributeNames.h"
#include "Core/DataObjects/LazyMask.h"
#include "Core/DataObjects/RGBImageFromBuffer.h"
#include "Core/DataObjects/RGBImageToImage.h"
#include "Tests/DataObjects/Companions.h"
#include "Tests/Support/EachTarget.h"
#include "Tests/Support/Raises.h"

#include <array>
#include <numeric>
#include <random>

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using Size = Math::Size2T<unsigned int>;
using Words = Image<unsigned short>;

struct Position
{
    unsigned int x;
    unsigned int y;
};
using Positions = std::vector<Position>;

struct Code
{
    int number;
    /// Where red lies; blue lies at the other parities, green between them.
    Position parityOfRed;
};
constexpr std::array<Code, 4> codes{{{1, {0, 0}}, {257, {1, 0}}, {513, {0, 1}}, {769, {1, 1}}}};

/// The sites that red, green and blue of a pixel belong to, one by one; the edges are mirrored.
std::array<Positions, 3> sitesOf(const Code& code, const Size& size, const Position& at)
{
    const auto before = [](unsigned int i) { return i == 0 ? 1 : i - 1; };
    const auto behind = [](unsigned int i, unsigned int count) { return i + 1 == count ? i - 1 : i + 1; };
    const unsigned int left = before(at.x);
    const unsigned int right = behind(at.x, size.width);
    const unsigned int above = before(at.y);
    const unsigned int below = behind(at.y, size.height);
    const Positions here{at};
    const Positions vertical{{at.x, above}, {at.x, below}};
    const Positions horizontal{{left, at.y}, {right, at.y}};
    const Positions cross{{at.x, above}, {at.x, below}, {left, at.y}, {right, at.y}};
    const Positions diagonal{{left, above}, {right, above}, {left, below}, {right, below}};
    const bool inColumnOfRed = at.x % 2 == code.parityOfRed.x;
    const bool inRowOfRed = at.y % 2 == code.parityOfRed.y;
    if (inColumnOfRed && inRowOfRed) {
        return {here, cross, diagonal};
    }
    if (inColumnOfRed) {
        return {vertical, here, horizontal};
    }
    return inRowOfRed ? std::array{horizontal, here, vertical} : std::array{diagonal, cross, here};
}

/// Calls with each position and its three lists of sites.
template <typename Call>
void forAllPixels(const Code& code, const Size& size, Call&& call)
{
    for (unsigned int y = 0; y < size.height; ++y) {
        for (unsigned int x = 0; x < size.width; ++x) {
            call(Position{x, y}, sitesOf(code, size, {x, y}));
        }
    }
}

RGBImage expectedColour(const Code& code, const Words& mosaic)
{
    RGBImage image(mosaic.GetSize(), Rgb16(), true);
    const auto mean = [&](const Positions& sites) {
        const auto add = [&](unsigned int sum, const Position& site) { return sum + mosaic(site.x, site.y); };
        return static_cast<unsigned short>(std::accumulate(sites.begin(), sites.end(), 0U, add) /
                                           sites.size());
    };
    forAllPixels(code, mosaic.GetSize(), [&](const Position& at, const auto& sites) {
        image(at.x, at.y) = Rgb16(mean(sites[0]), mean(sites[1]), mean(sites[2]));
    });
    return image;
}

Words expectedMosaic(const Code& code, const RGBImage& image)
{
    Words mosaic(image.GetSize(), 0, true);
    const auto add = [&](unsigned short component, const Positions& sites) {
        for (const Position& site : sites) {
            mosaic(site.x, site.y) = static_cast<unsigned short>(mosaic(site.x, site.y) + component);
        }
    };
    forAllPixels(code, image.GetSize(), [&](const Position& at, const auto& sites) {
        const Rgb16 pixel = image(at.x, at.y);
        add(pixel.red, sites[0]);
        add(pixel.green, sites[1]);
        add(pixel.blue, sites[2]);
    });
    return mosaic;
}

const std::array<Size, 9> sizes{
    {{2, 2}, {2, 5}, {5, 2}, {3, 3}, {7, 4}, {33, 5}, {70, 3}, {64, 8}, {131, 6}}};

template <typename Call>
void forAllCodesAndSizes(Call&& call)
{
    for (const Code& code : codes) {
        for (const Size& size : sizes) {
            SCOPED_TRACE(testing::Message() << code.number << ", " << size.width << " x " << size.height);
            call(code, size);
        }
    }
}

Words mosaicOf(const Code& code, const Size& size)
{
    Words mosaic(size, true);
    std::mt19937 generator(size.width);
    for (unsigned short& pixel : mosaic) {
        pixel = static_cast<unsigned short>(generator());
    }
    mosaic.GetAttributes().set(Attr::rgbFrame, code.number);
    return mosaic;
}

TEST(BayerTransformerTest, MosaicsBecomeColours)
{
    onEachTarget([] {
        forAllCodesAndSizes([](const Code& code, const Size& size) {
            const Words mosaic = mosaicOf(code, size);
            const RGBImage image = createRGBImageFromImage(mosaic);
            const RGBImage expected = expectedColour(code, mosaic);
            ASSERT_EQ(image.GetSize(), size);
            EXPECT_TRUE(std::equal(image.begin(), image.end(), expected.begin()));
        });
    });
}

TEST(BayerTransformerTest, ColoursBecomeMosaics)
{
    onEachTarget([] {
        forAllCodesAndSizes([](const Code& code, const Size& size) {
            RGBImage image(size, Rgb16(), true);
            std::mt19937 generator(size.height);
            for (Rgb16& pixel : image) {
                pixel = Rgb16(static_cast<unsigned int>(generator()));
                pixel.blue = static_cast<unsigned short>(generator());
            }
            const Words mosaic = createBayerPatternImageFromRGBImage(image, code.number);
            const Words expected = expectedMosaic(code, image);
            ASSERT_EQ(mosaic.GetSize(), size);
            EXPECT_TRUE(std::equal(mosaic.begin(), mosaic.end(), expected.begin()));
            EXPECT_EQ(mosaic.GetAttributes().attributeValue(Attr::rgbFrame).value<int>(), code.number);
        });
    });
}

TEST(BayerTransformerTest, AnExampleByHand)
{
    // Red at (0, 0), blue at (1, 1); each neighbour stands for that of the other side too.
    Words mosaic(2, 2, true);
    mosaic(0, 0) = 40000;
    mosaic(1, 0) = 65535;
    mosaic(0, 1) = 65532;
    mosaic(1, 1) = 7;
    mosaic.GetAttributes().set(Attr::rgbFrame, 1);
    const RGBImage image = createRGBImageFromImage(mosaic);
    EXPECT_EQ(image(0, 0), Rgb16(40000, 65533, 7));
    EXPECT_EQ(image(1, 0), Rgb16(40000, 65535, 7));
    EXPECT_EQ(image(0, 1), Rgb16(40000, 65532, 7));
    EXPECT_EQ(image(1, 1), Rgb16(40000, 65533, 7));

    const Words back = createBayerPatternImageFromRGBImage(RGBImage(2, 2, Rgb16(1, 10, 7000), true), 1);
    EXPECT_EQ(back(0, 0), 1 + 2 + 2 + 4);
    EXPECT_EQ(back(1, 0), 10 + 20 + 20);
    EXPECT_EQ(back(1, 1), (7000 + 14000 + 14000 + 28000) % 65536);
}

TEST(BayerTransformerTest, CompanionsComeAlong)
{
    Words mosaic = mosaicOf(codes[1], {3, 3});
    addCompanions(mosaic);
    const RGBImage image = createRGBImageFromImage(mosaic);
    expectCompanions(image);
    EXPECT_FALSE(image.GetAttributes().contains(Attr::rgbFrame));
    expectCompanions(createBayerPatternImageFromRGBImage(image, 513));
    EXPECT_TRUE(mosaic.GetAttributes().contains(Attr::rgbFrame));

    mosaic.ReplaceMaskStrategy(std::make_unique<LazyMask>(3, 3, true));
    EXPECT_TRUE(AllValuesValid(createRGBImageFromImage(mosaic)));
    EXPECT_FALSE(mosaic.IsMaskSpawned());
}

TEST(BayerTransformerTest, RefusesWhatIsNoMosaic)
{
    const auto refuses = [](const QString& text, const ImageVariant& image) {
        EXPECT_TRUE(raises(text, [&] { return createRGBImageFromImage(image); }));
    };
    Words mosaic(2, 2, true);
    refuses("not a rgb frame", mosaic);
    const std::vector<std::pair<AttributeValue, QString>> codesAndTexts{
        {0, "not a rgb frame"},
        {QStringLiteral("2"), "Invalid RGBFrame attribute: 2"},
        {1e12, "Invalid RGBFrame attribute: 2147483647"}};
    for (const auto& [code, text] : codesAndTexts) {
        mosaic.GetAttributes().set(Attr::rgbFrame, code);
        refuses(text, mosaic);
    }
    Image<float> floats(2, 2, true);
    refuses("not a rgb frame", floats);
    floats.GetAttributes().set(Attr::rgbFrame, 1);
    refuses("Invalid RGB image type", floats);

    const QString tooSmall = "Image to small. Needs to be at least 2x2";
    refuses(tooSmall, mosaicOf(codes[0], {1, 4}));
    refuses(tooSmall, mosaicOf(codes[0], {4, 1}));
    const auto mosaicOfColour = [](unsigned int height, int code) {
        return [=] { return createBayerPatternImageFromRGBImage(RGBImage(4, height, Rgb16(), true), code); };
    };
    expectRaised({{tooSmall, mosaicOfColour(1, 1)}, {"Invalid RGBFrame attribute: 3", mosaicOfColour(4, 3)}});
}

} // namespace
