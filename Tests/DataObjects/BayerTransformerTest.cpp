// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/BayerTransformer.h"

#include "Core/Common/AttributeNames.h"
#include "Core/DataObjects/LazyMask.h"
#include "Core/DataObjects/RGBImageFromBuffer.h"
#include "Core/DataObjects/RGBImageToImage.h"
#include "Core/DataObjects/ScalarField.h"
#include "Tests/DataObjects/Companions.h"
#include "Tests/Support/EachTarget.h"
#include "Tests/Support/Raises.h"

#include <array>
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
    Position parityOfA;
    Position parityOfD;
};
constexpr std::array<Code, 4> codes{
    {{1, {0, 0}, {1, 1}}, {257, {1, 0}, {0, 1}}, {513, {0, 1}, {1, 0}}, {769, {1, 1}, {0, 0}}}};

/// The plain form: lists of sites, and neighbours one by one.
class Reference
{
public:
    Reference(const Code& code, const Size& size) : m_size(size)
    {
        for (unsigned int y = 0; y < size.height; ++y) {
            for (unsigned int x = 0; x < size.width; ++x) {
                listOf(code, x % 2, y % 2).push_back({x, y});
            }
        }
    }

    [[nodiscard]] RGBImage toColour(const Words& mosaic) const
    {
        RGBImage image(m_size, Rgb16(), true);
        const auto mean = [&](const Positions& neighbours) {
            unsigned int sum = 0;
            for (const Position& each : neighbours) {
                sum += mosaic(each.x, each.y);
            }
            return static_cast<unsigned short>(sum / neighbours.size());
        };
        visit([&](Position at, const Positions& red, const Positions& green, const Positions& blue) {
            image(at.x, at.y) = Rgb16(mean(red), mean(green), mean(blue));
        });
        return image;
    }

    [[nodiscard]] Words toMosaic(const RGBImage& image) const
    {
        Words mosaic(m_size, 0, true);
        const auto add = [&](unsigned short component, const Positions& neighbours) {
            for (const Position& each : neighbours) {
                mosaic(each.x, each.y) = static_cast<unsigned short>(mosaic(each.x, each.y) + component);
            }
        };
        visit([&](Position at, const Positions& red, const Positions& green, const Positions& blue) {
            const Rgb16 pixel = image(at.x, at.y);
            add(pixel.red, red);
            add(pixel.green, green);
            add(pixel.blue, blue);
        });
        return mosaic;
    }

private:
    Positions& listOf(const Code& code, unsigned int x, unsigned int y)
    {
        if (x == code.parityOfA.x && y == code.parityOfA.y) {
            return m_a;
        }
        if (x != code.parityOfD.x) {
            return m_b;
        }
        return y != code.parityOfD.y ? m_c : m_d;
    }

    /// Calls with the position and with those that red, green and blue belong to.
    template <typename Call>
    void visit(Call&& call) const
    {
        const auto on = [](Position at) { return Positions{at}; };
        for (const Position& at : m_b) {
            call(at, vertical(at), on(at), horizontal(at));
        }
        for (const Position& at : m_c) {
            call(at, horizontal(at), on(at), vertical(at));
        }
        for (const Position& at : m_d) {
            call(at, diagonal(at), cross(at), on(at));
        }
        for (const Position& at : m_a) {
            call(at, on(at), cross(at), diagonal(at));
        }
    }

    [[nodiscard]] unsigned int before(unsigned int i) const { return i == 0 ? 1 : i - 1; }
    [[nodiscard]] unsigned int behind(unsigned int i, unsigned int count) const
    {
        return i + 1 == count ? i - 1 : i + 1;
    }
    [[nodiscard]] Positions vertical(Position at) const
    {
        return {{at.x, before(at.y)}, {at.x, behind(at.y, m_size.height)}};
    }
    [[nodiscard]] Positions horizontal(Position at) const
    {
        return {{before(at.x), at.y}, {behind(at.x, m_size.width), at.y}};
    }
    [[nodiscard]] Positions cross(Position at) const
    {
        Positions all = vertical(at);
        const Positions rest = horizontal(at);
        all.insert(all.end(), rest.begin(), rest.end());
        return all;
    }
    [[nodiscard]] Positions diagonal(Position at) const
    {
        Positions all;
        for (const Position& row : vertical(at)) {
            const Positions pair = horizontal(row);
            all.insert(all.end(), pair.begin(), pair.end());
        }
        return all;
    }

    Size m_size;
    Positions m_a;
    Positions m_b;
    Positions m_c;
    Positions m_d;
};

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
            const RGBImage expected = Reference(code, size).toColour(mosaic);
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
            const Words expected = Reference(code, size).toMosaic(image);
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
    mosaic.GetAttributes().set(Attr::rgbFrame, 0);
    refuses("not a rgb frame", mosaic);
    mosaic.GetAttributes().set(Attr::rgbFrame, QStringLiteral("2"));
    refuses("Invalid RGBFrame attribute: 2", mosaic);
    mosaic.GetAttributes().set(Attr::rgbFrame, 1e12);
    refuses("Invalid RGBFrame attribute: 2147483647", mosaic);

    Image<float> floats(2, 2, true);
    refuses("not a rgb frame", floats);
    floats.GetAttributes().set(Attr::rgbFrame, 1);
    refuses("Invalid RGB image type", floats);

    const QString tooSmall = "Image to small. Needs to be at least 2x2";
    refuses(tooSmall, mosaicOf(codes[0], {1, 4}));
    refuses(tooSmall, mosaicOf(codes[0], {4, 1}));
    EXPECT_TRUE(raises(tooSmall,
                       [] { return createBayerPatternImageFromRGBImage(RGBImage(4, 1, Rgb16(), true), 1); }));
    EXPECT_TRUE(raises("Invalid RGBFrame attribute: 3",
                       [] { return createBayerPatternImageFromRGBImage(RGBImage(4, 4, Rgb16(), true), 3); }));
}

} // namespace
