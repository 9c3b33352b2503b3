// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/TextTable.h"

#include <algorithm>
#include <array>

namespace Qf
{

QStringList alignedLines(const std::vector<QStringList>& rows)
{
    std::vector<qsizetype> widths;
    for (const QStringList& row : rows) {
        widths.resize(std::max(widths.size(), static_cast<std::size_t>(row.size())), 0);
        for (qsizetype i = 0; i < row.size(); ++i) {
            widths[static_cast<std::size_t>(i)] =
                std::max(widths[static_cast<std::size_t>(i)], row[i].size());
        }
    }
    QStringList lines;
    for (const QStringList& row : rows) {
        QString line;
        for (qsizetype i = 0; i < row.size(); ++i) {
            line += row[i].leftJustified(widths[static_cast<std::size_t>(i)] + 2);
        }
        lines << line.trimmed() + QLatin1Char('\n');
    }
    return lines;
}

QString byteCountText(unsigned long long bytes)
{
    const std::array<const char*, 5> units{"B", "KiB", "MiB", "GiB", "TiB"};
    auto value = static_cast<double>(bytes);
    std::size_t unit = 0;
    for (; value >= 1024.0 && unit + 1 < units.size(); ++unit) {
        value /= 1024.0;
    }
    return QString::number(value, 'f', unit == 0 ? 0 : 1) + QLatin1Char(' ') + QLatin1String(units[unit]);
}

} // namespace Qf
