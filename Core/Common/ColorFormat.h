// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Export.h"

namespace RTE
{

/// Which colour stands at the first pixels of a frame's colour filter pattern. The numbers are those of the
/// attribute Attr::rgbFrame. The name reads the first two pixels of row 0, then those of row 1.
enum class ColorFormat
{
    Monochrome = 0,
    BayerRGGB = 0x0001,
    BayerGRBG = 0x0101,
    BayerGBRG = 0x0201,
    BayerBGGR = 0x0301
};

/// \throws RTE::InvalidArgumentError for a number that is not one of ColorFormat
[[nodiscard]] DATAOBJECTS_COMMON_EXPORT ColorFormat toColorFormat(int number);

} // namespace RTE
