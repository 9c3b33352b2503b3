// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/UnitsRegistry.h"

#include "Core/Common/Raise.h"

namespace RTE
{

UnitsRegistry::UnitsRegistry()
{
    m_families.push_back(std::make_unique<LengthUnits>());
    m_families.push_back(std::make_unique<TimeUnits>());
    m_families.push_back(std::make_unique<AngleUnits>());
    m_families.push_back(std::make_unique<VelocityUnits>());
    m_families.push_back(std::make_unique<AccelerationUnits>());
    m_families.push_back(std::make_unique<TemperatureUnits>());
}

UnitsRegistry::~UnitsRegistry() = default;

const UnitsRegistry& UnitsRegistry::getInstance()
{
    static const UnitsRegistry instance;
    return instance;
}

bool UnitsRegistry::containsUnitId(const QString& id, bool withAliases) const
{
    return find(id, withAliases) != nullptr;
}

Units& UnitsRegistry::getUnits(const QString& id, bool withAliases) const
{
    Units* units = find(id, withAliases);
    if (units == nullptr) {
        raise(InvalidArgumentError(QStringLiteral("Unknown unit: %1").arg(id)));
    }
    return *units;
}

QString UnitsRegistry::getLabelForUnitId(const QString& id) const
{
    const Units* units = find(id, true);
    return units == nullptr ? id : units->GetLabel(id);
}

Units* UnitsRegistry::find(const QString& id, bool withAliases) const
{
    for (const auto& family : m_families) {
        if (family->ContainsUnitId(id, withAliases)) {
            return family.get();
        }
    }
    return nullptr;
}

} // namespace RTE
