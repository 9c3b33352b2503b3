// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/PixelComparison.h"

#include "Tools/qf/NumberText.h"
#include "Tools/qf/PlaneValues.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace Qf
{

namespace
{

using BufferApi::I_PlaneBase;
using BufferApi::RgbQuad;

/// Pixels as numbers, several of each in colour: the fourth byte counts too.
std::vector<double> channelValues(const I_PlaneBase& plane)
{
    if (plane.GetDataType() != BufferApi::DT_RGB) {
        return planeValues(plane);
    }
    const auto* pixels = static_cast<const RgbQuad*>(plane.GetData());
    std::vector<double> values;
    values.reserve(4 * pixelCount(plane));
    std::for_each(pixels, pixels + pixelCount(plane), [&](const RgbQuad& pixel) {
        for (const unsigned char channel : {pixel.red, pixel.green, pixel.blue, pixel.reserved}) {
            values.push_back(channel);
        }
    });
    return values;
}

/// How far apart two numbers are; infinitely when one is no number and the other is one.
double distance(double a, double b)
{
    if (a == b || (std::isnan(a) && std::isnan(b))) {
        return 0.0;
    }
    const double difference = std::abs(a - b);
    return std::isnan(difference) ? std::numeric_limits<double>::infinity() : difference;
}

class Comparison
{
public:
    Comparison(const I_PlaneBase& a, const I_PlaneBase& b, const DiffRules& rules)
        : m_rules(rules), m_bytes(BufferApi::GetDataTypeSize(a.GetDataType())),
          m_isBitwise(rules.isExact() && a.GetDataType() == b.GetDataType()),
          m_rawA(static_cast<const char*>(a.GetData())), m_rawB(static_cast<const char*>(b.GetData())),
          m_valuesA(channelValues(a)), m_valuesB(channelValues(b)), m_count(pixelCount(a)),
          m_width(a.GetWidth())
    {
    }

    [[nodiscard]] std::optional<PixelDifference> result() const
    {
        PixelDifference difference;
        difference.total = m_count;
        for (std::size_t pixel = 0; pixel < m_count; ++pixel) {
            if (differs(pixel)) {
                add(difference, pixel);
            }
        }
        return difference.count > 0 ? std::optional(difference) : std::nullopt;
    }

private:
    [[nodiscard]] bool differs(std::size_t pixel) const
    {
        if (m_isBitwise) {
            return std::memcmp(m_rawA + pixel * m_bytes, m_rawB + pixel * m_bytes, m_bytes) != 0;
        }
        for (std::size_t i = pixel * channels(); i < (pixel + 1) * channels(); ++i) {
            const double magnitude = std::max(std::abs(m_valuesA[i]), std::abs(m_valuesB[i]));
            const double apart = distance(m_valuesA[i], m_valuesB[i]);
            // Infinity times 0 is no number; equal infinities are no distance apart.
            if (apart > 0.0 && !(apart <= m_rules.tolerance.value_or(0.0) + relative(magnitude))) {
                return true;
            }
        }
        return false;
    }

    [[nodiscard]] double relative(double magnitude) const
    {
        return std::isfinite(magnitude) ? m_rules.relative.value_or(0.0) * magnitude : 0.0;
    }

    [[nodiscard]] std::size_t channels() const { return m_valuesA.size() / m_count; }

    void add(PixelDifference& difference, std::size_t pixel) const
    {
        double largest = 0.0;
        for (std::size_t i = pixel * channels(); i < (pixel + 1) * channels(); ++i) {
            largest = std::max(largest, distance(m_valuesA[i], m_valuesB[i]));
        }
        if (difference.count == 0 || largest > difference.largest) {
            difference.largest = largest;
            difference.x = pixel % m_width;
            difference.y = pixel / m_width;
        }
        ++difference.count;
    }

    const DiffRules& m_rules;
    std::size_t m_bytes;
    bool m_isBitwise;
    const char* m_rawA;
    const char* m_rawB;
    std::vector<double> m_valuesA;
    std::vector<double> m_valuesB;
    std::size_t m_count;
    std::size_t m_width;
};

} // namespace

std::optional<PixelDifference> comparePixels(const I_PlaneBase& a, const I_PlaneBase& b,
                                             const DiffRules& rules)
{
    const std::size_t bytes = pixelCount(a) * BufferApi::GetDataTypeSize(a.GetDataType());
    const bool areSame =
        a.GetDataType() == b.GetDataType() && std::memcmp(a.GetData(), b.GetData(), bytes) == 0;
    return bytes == 0 || areSame ? std::nullopt : Comparison(a, b, rules).result();
}

QString pixelText(const I_PlaneBase& plane, unsigned long long x, unsigned long long y)
{
    return visitPlane(plane, [&](auto tag) {
        using T = typename decltype(tag)::type;
        return QString::fromStdString(
            exactText(static_cast<const T*>(plane.GetData())[y * plane.GetWidth() + x]));
    });
}

} // namespace Qf
