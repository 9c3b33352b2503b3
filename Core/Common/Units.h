// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Export.h"
#include "Core/Common/LinearScale.h"

#include <QString>

#include <vector>

namespace RTE
{

/// One unit and its way to the base unit of its quantity: base = value * numerator / denominator + offset.
///
/// The factor is a fraction of whole numbers where it can be, so that a conversion is rounded once: 1 inch
/// is 25.4 mm.
struct Unit
{
    QString id;                   ///< as scales and attributes name it: "mm", "m/s^2", "deg"
    QString label;                ///< as a user reads it: "mm", "m/s²", "°"
    std::vector<QString> aliases; ///< other spellings of the id, such as "um" for "µm"
    int quantity = 0;             ///< units of one family scale into each other only within a quantity
    double numerator = 1.0;
    double denominator = 1.0;
    double offset = 0.0;
};

/// A family of units, such as those of length. Constant; read from any thread.
///
/// Ids are compared with case, because "mm" and "Mm" differ. An alias is accepted wherever a unit is
/// converted. The Greek letter mu counts as the micro sign and the superscript two as "^2".
class DATAOBJECTS_COMMON_EXPORT Units
{
public:
    explicit Units(std::vector<Unit> units);
    Units(const Units&) = default;
    Units& operator=(const Units&) = default;
    virtual ~Units();

    /// True if both units are of this family and of one quantity; pixels, say, are no metres.
    [[nodiscard]] bool CanScale(const QString& from, const QString& to) const;
    /// The scale from values in `from` to values in `to`, with the unit `to` and no description.
    /// \throws RTE::InvalidArgumentError "Cannot scale from unit '%1' to unit '%2'" unless CanScale
    [[nodiscard]] Zt::LinearScale GetScale(const QString& from, const QString& to) const;
    /// With `withAliases` also true for other spellings of an id.
    [[nodiscard]] bool ContainsUnitId(const QString& id, bool withAliases) const;
    /// The label of a unit or alias; empty if it is not of this family.
    [[nodiscard]] QString GetLabel(const QString& id) const;
    [[nodiscard]] const std::vector<Unit>& GetUnits() const noexcept { return m_units; }

private:
    [[nodiscard]] const Unit* find(const QString& id, bool withAliases) const;

    std::vector<Unit> m_units;
};

/// Metres and their parts and multiples, inches and feet; pixels, voxels and planes, which do not convert.
class DATAOBJECTS_COMMON_EXPORT LengthUnits : public Units
{
public:
    LengthUnits();

    static const QString Meter;
    static const QString Millimeter;
    static const QString Micrometer;
    static const QString Pixel;
    static const QString Voxel;
};

/// From picoseconds to days.
class DATAOBJECTS_COMMON_EXPORT TimeUnits : public Units
{
public:
    TimeUnits();

    static const QString Day;
    static const QString Hour;
    static const QString Minute;
    static const QString Second;
    static const QString Millisecond;
    static const QString Microsecond;
    static const QString Nanosecond;
    static const QString Picosecond;

    /// \name A time in `unit` as a text for the user. Clock texts are rounded to milliseconds.
    /// \throws RTE::InvalidArgumentError if `unit` is no unit of time
    /// \{

    /// "1:30:05.25 h"
    [[nodiscard]] static QString toHourString(double value, const QString& unit);
    /// "90:05.25 min"
    [[nodiscard]] static QString toMinuteString(double value, const QString& unit);
    /// The form that reads best: "250 µs", "59.5 s", "1:30 min", "2:05:00 h"; up to six digits below a
    /// minute.
    [[nodiscard]] static QString toNiceString(double value, const QString& unit);

    /// \}
};

/// Radians, milliradians, degrees and gon.
class DATAOBJECTS_COMMON_EXPORT AngleUnits : public Units
{
public:
    AngleUnits();

    static const QString Radian;
    static const QString Degree;
};

/// Metres per second and their like; pixels and voxels per second, which do not convert.
class DATAOBJECTS_COMMON_EXPORT VelocityUnits : public Units
{
public:
    VelocityUnits();

    static const QString MeterPerSecond;
};

/// Metres per square second and their like.
class DATAOBJECTS_COMMON_EXPORT AccelerationUnits : public Units
{
public:
    AccelerationUnits();

    static const QString MeterPerSquareSecond;
};

/// Kelvin, degrees Celsius and degrees Fahrenheit.
class DATAOBJECTS_COMMON_EXPORT TemperatureUnits : public Units
{
public:
    TemperatureUnits();

    static const QString Kelvin;
    static const QString Celsius;
};

} // namespace RTE
