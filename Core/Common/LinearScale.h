// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Export.h"

#include <QString>

#include <functional>

namespace Zt
{

/// The default scale of an axis: x, y and z count pixels or planes, I counts camera intensities.
enum class ScalePreset
{
    X = 0,
    Y = 1,
    Z = 2,
    I = 3
};

/// Description of the default X scale; also given to a frame's X scale that has none.
DATAOBJECTS_COMMON_EXPORT extern const QString scalePresetXDescription;

/// Linear mapping from raw to physical values, with unit and description: physical = factor * raw + offset.
///
/// Objects share scales through `std::shared_ptr`; `set` changes one in place, so that all who share it see
/// the change. The change callback belongs to the object, not to its value: copies start without one, and
/// assignment keeps the target's own and fires it. Not synchronised.
class DATAOBJECTS_COMMON_EXPORT LinearScale
{
public:
    using ChangedCallback = std::function<void(const LinearScale&)>;

    LinearScale(double factor, double offset, const QString& unit, const QString& description);
    explicit LinearScale(ScalePreset preset);
    LinearScale(const LinearScale& other);
    LinearScale(LinearScale&& other) noexcept;
    LinearScale& operator=(const LinearScale& other);
    LinearScale& operator=(LinearScale&& other);
    ~LinearScale();

    [[nodiscard]] double getFactor() const noexcept { return m_factor; }
    [[nodiscard]] double getOffset() const noexcept { return m_offset; }
    [[nodiscard]] QString getUnit() const { return m_unit; }
    [[nodiscard]] QString getDescription() const { return m_description; }

    [[nodiscard]] double getScaled(double x) const noexcept { return m_factor * x + m_offset; }
    /// Undefined for a factor of 0, as the division leaves it.
    [[nodiscard]] double getUnscaled(double y) const noexcept { return (y - m_offset) / m_factor; }

    void setFactor(double factor);
    void setOffset(double offset);
    void setUnit(const QString& unit);
    void setDescription(const QString& description);
    /// Takes all four fields in place; the callback fires once.
    void set(const LinearScale& other);

    /// Installs the callback that fires after each change, with this scale as its argument; an empty one
    /// removes it. The callback may replace or remove itself.
    void setChangedCallback(ChangedCallback callback);

    /// Compares factor, offset, unit and description.
    [[nodiscard]] friend bool operator==(const LinearScale& a, const LinearScale& b)
    {
        return a.m_factor == b.m_factor && a.m_offset == b.m_offset && a.m_unit == b.m_unit &&
               a.m_description == b.m_description;
    }

private:
    void changed() const;

    double m_factor;
    double m_offset;
    QString m_unit;
    QString m_description;
    ChangedCallback m_changed;
};

} // namespace Zt
