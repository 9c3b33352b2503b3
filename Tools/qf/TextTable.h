// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

#include <vector>

namespace Qf
{

/// One line for each row, each column as wide as its widest text.
[[nodiscard]] QStringList alignedLines(const std::vector<QStringList>& rows);

/// "3.1 KiB".
[[nodiscard]] QString byteCountText(unsigned long long bytes);

} // namespace Qf
