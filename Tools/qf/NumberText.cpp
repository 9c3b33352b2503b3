// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/NumberText.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace Qf
{

namespace
{

std::string hexadecimal(std::uint64_t value, std::size_t digits)
{
    std::array<char, 16> text{};
    const std::string number(text.data(), std::to_chars(text.begin(), text.end(), value, 16).ptr);
    return std::string(digits - std::min(digits, number.size()), '0').append(number);
}

template <typename Number>
std::string shortest(Number value)
{
    // The longest are numbers such as -2.2250738585072014e-308.
    std::array<char, 32> text{};
    return {text.data(), std::to_chars(text.begin(), text.end(), value).ptr};
}

template <typename Bits, typename Number>
std::string floatingText(Number value)
{
    const auto bits = std::bit_cast<Bits>(value);
    if (std::isnan(value) && bits != std::bit_cast<Bits>(std::numeric_limits<Number>::quiet_NaN())) {
        return std::string("nan(0x").append(hexadecimal(bits, 2 * sizeof(Bits))).append(")");
    }
    return shortest(value);
}

} // namespace

std::string exactText(float value)
{
    return floatingText<std::uint32_t>(value);
}

std::string exactText(double value)
{
    return floatingText<std::uint64_t>(value);
}

std::string exactText(int value)
{
    return shortest(value);
}

std::string exactText(unsigned int value)
{
    return shortest(value);
}

std::string exactText(const BufferApi::RgbQuad& color)
{
    const std::uint64_t rgb =
        (std::uint64_t{color.red} << 16U) | (std::uint64_t{color.green} << 8U) | color.blue;
    return std::string("#").append(color.reserved == 0 ? hexadecimal(rgb, 6)
                                                       : hexadecimal((rgb << 8U) | color.reserved, 8));
}

QString scaleText(const Zt::LinearScale& scale)
{
    QString text = QString::fromStdString(exactText(scale.getFactor())) + QStringLiteral(" * value");
    if (scale.getOffset() != 0.0) {
        text += (scale.getOffset() < 0.0 ? QStringLiteral(" - ") : QStringLiteral(" + ")) +
                QString::fromStdString(exactText(std::abs(scale.getOffset())));
    }
    return QStringLiteral("%1 %2  %3").arg(text, scale.getUnit(), scale.getDescription()).trimmed();
}

} // namespace Qf
