// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/ColorFormat.h"

#include "Core/Common/Raise.h"

namespace RTE
{

ColorFormat toColorFormat(int number)
{
    const auto format = static_cast<ColorFormat>(number);
    switch (format) {
    case ColorFormat::Monochrome:
    case ColorFormat::BayerRGGB:
    case ColorFormat::BayerGRBG:
    case ColorFormat::BayerGBRG:
    case ColorFormat::BayerBGGR:
        return format;
    }
    raise(InvalidArgumentError(QStringLiteral("Unknown color format: %1").arg(number)));
}

} // namespace RTE
