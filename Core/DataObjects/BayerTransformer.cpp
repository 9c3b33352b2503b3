// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/BayerTransformer.h"

#include "Core/Common/AttributeNames.h"
#include "Core/Common/TargetClones.h"
#include "Core/DataObjects/CacheLines.h"
#include "Core/DataObjects/RGBImageParts.h"

#include <algorithm>
#include <array>
#include <limits>

namespace DataObjects
{

namespace
{

using Row = std::vector<unsigned short>;
using Size = Math::Size2T<unsigned int>;

struct Phase
{
    int code;
    unsigned int redX;
    unsigned int redY;
};

constexpr std::array<Phase, 4> phases{{{0x0001, 0, 0}, {0x0101, 1, 0}, {0x0201, 0, 1}, {0x0301, 1, 1}}};

const Phase& phaseOf(int code)
{
    const auto* const phase =
        std::find_if(phases.begin(), phases.end(), [=](const Phase& each) { return each.code == code; });
    if (phase == phases.end()) {
        RTE::raise(RTE::VerificationFailed(QStringLiteral("Invalid RGBFrame attribute: %1").arg(code)));
    }
    return *phase;
}

int codeIn(const Attributes& attributes)
{
    using Limits = std::numeric_limits<int>;
    return static_cast<int>(std::clamp<double>(attributes.attributeValue(Attr::rgbFrame).value<double>(),
                                               Limits::min(), Limits::max()));
}

void verifySize(const Size& size)
{
    RTE::verify(size.width >= 2 && size.height >= 2, "Image to small. Needs to be at least 2x2");
}

/// The rows around one row of a mosaic, at whose edges the neighbour of the other side stands in.
class RowWindow
{
public:
    explicit RowWindow(const Image<unsigned short>& mosaic) : m_mosaic(mosaic)
    {
        m_rows.fill(Row(mosaic.GetWidth() + 2ULL));
        load(0);
    }

    /// For y = 0, 1, 2 and so on.
    [[nodiscard]] Private::MosaicRows at(unsigned int y)
    {
        const unsigned int height = m_mosaic.GetHeight();
        if (y + 1 < height) {
            load(y + 1);
        }
        return {row(y > 0 ? y - 1 : 1), row(y), row(y + 1 < height ? y + 1 : y - 1)};
    }

private:
    [[nodiscard]] const unsigned short* row(unsigned int y) const { return m_rows[y % 3].data(); }

    void load(unsigned int y)
    {
        const std::size_t width = m_mosaic.GetWidth();
        const unsigned short* const pixels = m_mosaic.GetRawPointer() + y * width;
        Row& target = m_rows[y % 3];
        std::copy_n(pixels, width, target.begin() + 1);
        target.front() = pixels[1];
        target.back() = pixels[width - 2];
    }

    const Image<unsigned short>& m_mosaic;
    std::array<Row, 3> m_rows;
};

/// What the pixels of one row add to a mosaic. Those beside a pixel have one element more at both ends: that
/// of pixel x is element x + 1.
struct RowShares
{
    explicit RowShares(std::size_t width)
        : center(width), beside(width + 2), straight(width), diagonal(width + 2)
    {
    }

    Row center;   ///< to the pixel itself
    Row beside;   ///< to the left and right
    Row straight; ///< up and down
    Row diagonal; ///< to the four diagonals
};

/// \param sites all bits set where the row has a site of red or blue, else 0
/// \param own component of the colour that the row has sites of \param other component of the third colour
DATAOBJECTS_TARGET_CLONES void
distribute(std::size_t width, const unsigned short* __restrict sites, const unsigned short* __restrict own,
           const unsigned short* __restrict green, const unsigned short* __restrict other,
           unsigned short* __restrict center, unsigned short* __restrict beside,
           unsigned short* __restrict straight, unsigned short* __restrict diagonal)
{
    const auto select = [](unsigned short site, unsigned short atSites, unsigned short between) {
        return static_cast<unsigned short>((site & atSites) | (~site & between));
    };
    for (std::size_t x = 0; x < width; ++x) {
        center[x] = select(sites[x], own[x], green[x]);
        beside[x] = select(sites[x], green[x], own[x]);
        straight[x] = select(sites[x], green[x], other[x]);
        diagonal[x] = select(sites[x], other[x], 0);
    }
}

/// The last pixel's neighbour beyond the edge is the one before the last, which gets both shares.
void doubleEnds(Row& shares)
{
    for (unsigned short* const share : {&shares[1], &shares[shares.size() - 2]}) {
        *share = static_cast<unsigned short>(2 * *share);
    }
}

/// Adds what comes straight and from both sides, with twice as large shares from a row at the edge: the row
/// beyond it is mirrored. Sums wrap.
DATAOBJECTS_TARGET_CLONES void addShares(std::size_t width, bool isTwice,
                                         const unsigned short* __restrict straight,
                                         const unsigned short* __restrict aside,
                                         unsigned short* __restrict mosaic)
{
    const unsigned int shift = isTwice ? 1 : 0;
    for (std::size_t x = 0; x < width; ++x) {
        const auto share = static_cast<unsigned short>(straight[x] + aside[x] + aside[x + 2]);
        mosaic[x] = static_cast<unsigned short>(mosaic[x] + (share << shift));
    }
}

/// Takes rows of pixels apart into what they add to a mosaic.
class RowSplitter
{
public:
    explicit RowSplitter(std::size_t width)
        : m_red(width), m_green(width), m_blue(width), m_evenSites(width + 1), m_shares(width)
    {
        for (std::size_t x = 0; x <= width; x += 2) {
            m_evenSites[x] = 0xFFFF;
        }
    }

    const RowShares& split(const Rgb16* pixels, const Private::MosaicSites& sites)
    {
        const std::size_t width = m_red.size();
        Private::splitChannels(pixels, width, m_red.data(), m_green.data(), m_blue.data());
        const bool isRed = sites.colour == Private::Channel::Red;
        distribute(width, m_evenSites.data() + sites.parity, (isRed ? m_red : m_blue).data(), m_green.data(),
                   (isRed ? m_blue : m_red).data(), m_shares.center.data(), m_shares.beside.data() + 1,
                   m_shares.straight.data(), m_shares.diagonal.data() + 1);
        doubleEnds(m_shares.beside);
        doubleEnds(m_shares.diagonal);
        return m_shares;
    }

private:
    Row m_red;
    Row m_green;
    Row m_blue;
    Row m_evenSites;
    RowShares m_shares;
};

} // namespace

BayerTransformer::BayerTransformer(int code)
    : m_code(code), m_redX(phaseOf(code).redX), m_redY(phaseOf(code).redY)
{
}

BayerTransformer::BayerTransformer(const Attributes& attributes) : BayerTransformer(codeIn(attributes)) {}

RGBImage BayerTransformer::toColour(const Image<unsigned short>& mosaic) const
{
    verifySize(mosaic.GetSize());
    RGBImage image(Private::copyOfMask(mosaic));
    RowWindow rows(mosaic);
    const std::size_t width = mosaic.GetWidth();
    const bool streams = Private::isWorthStreaming(mosaic.size() * (sizeof(unsigned short) + sizeof(Rgb16)));
    std::vector<Rgb16> row(streams ? width : 0);
    for (unsigned int y = 0; y < mosaic.GetHeight(); ++y) {
        Rgb16* const pixels = image.GetRawPointer() + y * width;
        Private::demosaicRow(rows.at(y), width, sitesOf(y), streams ? row.data() : pixels);
        if (streams) {
            Private::copyPastCache(row.data(), width, pixels);
        }
    }
    Private::copyParts(mosaic, image);
    image.GetAttributes().remove(Attr::rgbFrame);
    return image;
}

Image<unsigned short> BayerTransformer::toMosaic(const RGBImage& image) const
{
    verifySize(image.GetSize());
    const std::size_t width = image.GetWidth();
    const unsigned int height = image.GetHeight();
    ImageData<unsigned short> mosaic(image.GetSize(), 0);
    RowSplitter splitter(width);
    for (unsigned int y = 0; y < height; ++y) {
        const RowShares& shares = splitter.split(image.GetRawPointer() + y * width, sitesOf(y));
        unsigned short* const row = mosaic.GetRawPointer() + y * width;
        addShares(width, false, shares.center.data(), shares.beside.data(), row);
        const bool isEdge = y == 0 || y + 1 == height;
        if (y > 0) {
            addShares(width, isEdge, shares.straight.data(), shares.diagonal.data(), row - width);
        }
        if (y + 1 < height) {
            addShares(width, isEdge, shares.straight.data(), shares.diagonal.data(), row + width);
        }
    }
    Image<unsigned short> result = Private::withPartsOf(image, std::move(mosaic));
    result.GetAttributes().set(Attr::rgbFrame, m_code);
    return result;
}

Private::MosaicSites BayerTransformer::sitesOf(unsigned int y) const noexcept
{
    return y % 2 == m_redY ? Private::MosaicSites{Private::Channel::Red, m_redX}
                           : Private::MosaicSites{Private::Channel::Blue, 1 - m_redX};
}

} // namespace DataObjects
