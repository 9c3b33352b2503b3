// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/DataType.h"
#include "Core/Common/LinearScale.h"

#include <string>

namespace Qf
{

/// \name A value with as few digits as give it back exactly: "0.1", "1e-45", "-0"
/// That which is no number is told by its bits, "nan(0x7fc00001)", unless it is the usual one, "nan".
/// @{
[[nodiscard]] std::string exactText(float value);
[[nodiscard]] std::string exactText(double value);
[[nodiscard]] std::string exactText(int value);
[[nodiscard]] std::string exactText(unsigned int value);
/// @}

/// Red, green and blue as "#ff8000"; with the fourth byte too when it is not 0.
[[nodiscard]] std::string exactText(const BufferApi::RgbQuad& color);

/// "0.5 * value + 1 mm  Position x".
[[nodiscard]] QString scaleText(const Zt::LinearScale& scale);

} // namespace Qf
