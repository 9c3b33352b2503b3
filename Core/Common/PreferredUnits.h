// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <utility>

namespace RTE
{

/// The unit ids in which a user wants the two axes of a plot; empty where there is no wish.
class PreferredUnits
{
public:
    PreferredUnits() = default;
    PreferredUnits(QString unitX, QString unitY) : m_unitX(std::move(unitX)), m_unitY(std::move(unitY)) {}

    [[nodiscard]] QString getUnitX() const { return m_unitX; }
    [[nodiscard]] QString getUnitY() const { return m_unitY; }

    friend bool operator==(const PreferredUnits&, const PreferredUnits&) = default;

private:
    QString m_unitX;
    QString m_unitY;
};

} // namespace RTE
