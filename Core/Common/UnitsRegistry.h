// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Units.h"

#include <memory>
#include <vector>

namespace RTE
{

/// All families of units: length, time, angle, velocity, acceleration, temperature. No id is in two of them.
/// Constant; read from any thread.
class DATAOBJECTS_COMMON_EXPORT UnitsRegistry
{
public:
    UnitsRegistry(const UnitsRegistry&) = delete;
    UnitsRegistry& operator=(const UnitsRegistry&) = delete;

    [[nodiscard]] static const UnitsRegistry& getInstance();

    /// True if a family has the unit; with `withAliases` also for other spellings of its id.
    [[nodiscard]] bool containsUnitId(const QString& id, bool withAliases) const;
    /// The family that has the unit.
    /// \throws RTE::InvalidArgumentError "Unknown unit: %1" if there is none
    [[nodiscard]] Units& getUnits(const QString& id, bool withAliases) const;
    /// The label of a unit or alias, such as "°" for "deg". A unit that no family has is its own label.
    [[nodiscard]] QString getLabelForUnitId(const QString& id) const;
    [[nodiscard]] const std::vector<std::unique_ptr<Units>>& getFamilies() const noexcept
    {
        return m_families;
    }

private:
    UnitsRegistry();
    ~UnitsRegistry();

    [[nodiscard]] Units* find(const QString& id, bool withAliases) const;

    std::vector<std::unique_ptr<Units>> m_families;
};

} // namespace RTE
