// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QColor>
#include <QStringList>

#include <array>

namespace Qf
{

/// Turns a share of the value range, 0 to 1, into a colour.
///
/// "gray"; "viridis" and "inferno", whose brightness rises evenly, so that they also print in gray;
/// "diverging" from blue over white to red for values around zero.
class ColorMap
{
public:
    /// \throws RTE::InvalidArgumentError for an unknown name
    explicit ColorMap(const QString& name);

    [[nodiscard]] static QStringList names();

    /// Shares outside 0 to 1 give the end colours.
    [[nodiscard]] QRgb color(double share) const noexcept;
    /// True for a map whose middle stands for zero.
    [[nodiscard]] bool isDiverging() const noexcept { return m_diverging; }

private:
    std::array<QRgb, 256> m_colors;
    bool m_diverging;
};

} // namespace Qf
