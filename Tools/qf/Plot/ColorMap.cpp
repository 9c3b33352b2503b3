// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/Plot/ColorMap.h"

#include "Core/Common/Raise.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace Qf
{

namespace
{

/// Colours at equal distances, joined by straight lines in RGB.
struct Anchors
{
    const char* name;
    bool diverging;
    std::array<QRgb, 9> colors;
};

/// viridis and inferno by N. Smith and S. van der Walt (CC0), diverging after ColorBrewer's RdBu (C. Brewer).
constexpr std::array anchorTable{
    Anchors{"gray",
            false,
            {0x000000, 0x202020, 0x404040, 0x606060, 0x808080, 0x9f9f9f, 0xbfbfbf, 0xdfdfdf, 0xffffff}},
    Anchors{"viridis",
            false,
            {0x440154, 0x472d7b, 0x3b528b, 0x2c728e, 0x21918c, 0x28ae80, 0x5ec962, 0xaddc30, 0xfde725}},
    Anchors{"inferno",
            false,
            {0x000004, 0x210c4a, 0x57106e, 0x8a226a, 0xbc3754, 0xe45a31, 0xf98e09, 0xf9cb35, 0xfcffa4}},
    Anchors{"diverging",
            true,
            {0x2166ac, 0x4393c3, 0x92c5de, 0xd1e5f0, 0xf7f7f7, 0xfddbc7, 0xf4a582, 0xd6604d, 0xb2182b}},
};

int between(int from, int to, double share)
{
    return static_cast<int>(std::lround(from + (to - from) * share));
}

QRgb between(QRgb from, QRgb to, double share)
{
    return qRgb(between(qRed(from), qRed(to), share), between(qGreen(from), qGreen(to), share),
                between(qBlue(from), qBlue(to), share));
}

const Anchors& anchorsOf(const QString& name)
{
    const auto found = std::find_if(anchorTable.begin(), anchorTable.end(), [&](const Anchors& anchors) {
        return name == QLatin1String(anchors.name);
    });
    if (found == anchorTable.end()) {
        RTE::raise(RTE::InvalidArgumentError(QStringLiteral("no colour map '%1', choose one of %2")
                                                 .arg(name, ColorMap::names().join(QStringLiteral(", ")))));
    }
    return *found;
}

} // namespace

ColorMap::ColorMap(const QString& name)
{
    const Anchors& anchors = anchorsOf(name);
    m_diverging = anchors.diverging;
    const double step =
        static_cast<double>(anchors.colors.size() - 1) / static_cast<double>(m_colors.size() - 1);
    for (std::size_t i = 0; i < m_colors.size(); ++i) {
        const double position = static_cast<double>(i) * step;
        const std::size_t lower = std::min(static_cast<std::size_t>(position), anchors.colors.size() - 2);
        m_colors[i] =
            between(anchors.colors[lower], anchors.colors[lower + 1], position - static_cast<double>(lower));
    }
}

QStringList ColorMap::names()
{
    QStringList names;
    for (const Anchors& anchors : anchorTable) {
        names << QLatin1String(anchors.name);
    }
    return names;
}

QRgb ColorMap::color(double share) const noexcept
{
    const double last = static_cast<double>(m_colors.size() - 1);
    return m_colors[static_cast<std::size_t>(std::clamp(share, 0.0, 1.0) * last + 0.5)];
}

} // namespace Qf
