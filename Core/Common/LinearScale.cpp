// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/LinearScale.h"

#include <utility>

namespace Zt
{

// Constant-initialised from a literal without allocation, so that static initialisers elsewhere may use it.
const QString scalePresetXDescription = QStringLiteral("Position x");

namespace
{

LinearScale presetScale(ScalePreset preset)
{
    switch (preset) {
    case ScalePreset::X:
        return {1.0, 0.0, QStringLiteral("pixel"), scalePresetXDescription};
    case ScalePreset::Y:
        return {1.0, 0.0, QStringLiteral("pixel"), QStringLiteral("Position y")};
    case ScalePreset::Z:
        return {1.0, 0.0, QStringLiteral("plane"), QStringLiteral("Position z")};
    case ScalePreset::I:
        break;
    }
    return {1.0, 0.0, QStringLiteral("counts"), QStringLiteral("Intensity")};
}

} // namespace

LinearScale::LinearScale(double factor, double offset, const QString& unit, const QString& description)
    : m_factor(factor), m_offset(offset), m_unit(unit), m_description(description)
{
}

LinearScale::LinearScale(ScalePreset preset) : LinearScale(presetScale(preset)) {}

LinearScale::LinearScale(const LinearScale& other)
    : LinearScale(other.m_factor, other.m_offset, other.m_unit, other.m_description)
{
}

LinearScale::LinearScale(LinearScale&& other) noexcept
    : m_factor(other.m_factor), m_offset(other.m_offset), m_unit(std::move(other.m_unit)),
      m_description(std::move(other.m_description))
{
}

LinearScale& LinearScale::operator=(const LinearScale& other)
{
    set(other);
    return *this;
}

LinearScale& LinearScale::operator=(LinearScale&& other)
{
    set(other);
    return *this;
}

LinearScale::~LinearScale() = default;

void LinearScale::setFactor(double factor)
{
    m_factor = factor;
    changed();
}

void LinearScale::setOffset(double offset)
{
    m_offset = offset;
    changed();
}

void LinearScale::setUnit(const QString& unit)
{
    m_unit = unit;
    changed();
}

void LinearScale::setDescription(const QString& description)
{
    m_description = description;
    changed();
}

void LinearScale::set(const LinearScale& other)
{
    m_factor = other.m_factor;
    m_offset = other.m_offset;
    m_unit = other.m_unit;
    m_description = other.m_description;
    changed();
}

void LinearScale::setChangedCallback(ChangedCallback callback)
{
    m_changed = std::move(callback);
}

void LinearScale::changed() const
{
    // Called on a copy: the callback may install another or remove itself.
    if (const ChangedCallback callback = m_changed) {
        callback(*this);
    }
}

} // namespace Zt
