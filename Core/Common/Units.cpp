// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/Units.h"

#include "Core/Common/Raise.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace RTE
{

const QString LengthUnits::Meter = QStringLiteral("m");
const QString LengthUnits::Millimeter = QStringLiteral("mm");
const QString LengthUnits::Micrometer = QStringLiteral(u"\u00B5m");
const QString LengthUnits::Pixel = QStringLiteral("pixel");
const QString LengthUnits::Voxel = QStringLiteral("voxel");

const QString TimeUnits::Day = QStringLiteral("d");
const QString TimeUnits::Hour = QStringLiteral("h");
const QString TimeUnits::Minute = QStringLiteral("min");
const QString TimeUnits::Second = QStringLiteral("s");
const QString TimeUnits::Millisecond = QStringLiteral("ms");
const QString TimeUnits::Microsecond = QStringLiteral(u"\u00B5s");
const QString TimeUnits::Nanosecond = QStringLiteral("ns");
const QString TimeUnits::Picosecond = QStringLiteral("ps");

const QString AngleUnits::Radian = QStringLiteral("rad");
const QString AngleUnits::Degree = QStringLiteral("deg");

const QString VelocityUnits::MeterPerSecond = QStringLiteral("m/s");
const QString AccelerationUnits::MeterPerSquareSecond = QStringLiteral("m/s^2");

const QString TemperatureUnits::Kelvin = QStringLiteral("K");
const QString TemperatureUnits::Celsius = QStringLiteral(u"\u00B0C");

namespace
{

/// A line of the tables below, in UTF-16; the aliases stand between blanks.
struct Line
{
    QStringView id;
    QStringView label;
    QStringView aliases;
    int quantity;
    double numerator;
    double denominator;
    double offset = 0.0;
};

// The first quantity of a family is the physical one; the others count picture elements.
constexpr int physical = 0;
constexpr int pixels = 1;
constexpr int voxels = 2;
constexpr int planes = 3;

constexpr Line lengths[] = {
    {u"m", u"m", u"meter metre", physical, 1, 1},
    {u"km", u"km", u"", physical, 1000, 1},
    {u"cm", u"cm", u"", physical, 1, 100},
    {u"mm", u"mm", u"millimeter millimetre", physical, 1, 1000},
    {u"\u00B5m", u"\u00B5m", u"um micron", physical, 1, 1e6},
    {u"nm", u"nm", u"", physical, 1, 1e9},
    {u"inch", u"in", u"in", physical, 254, 10000},
    {u"ft", u"ft", u"foot feet", physical, 3048, 10000},
    {u"pixel", u"pixel", u"px Pixel pixels", pixels, 1, 1},
    {u"voxel", u"voxel", u"vx Voxel voxels", voxels, 1, 1},
    {u"plane", u"plane", u"planes", planes, 1, 1},
};

constexpr Line times[] = {
    {u"s", u"s", u"sec second seconds", physical, 1, 1},
    {u"ms", u"ms", u"msec", physical, 1, 1000},
    {u"\u00B5s", u"\u00B5s", u"us usec", physical, 1, 1e6},
    {u"ns", u"ns", u"nsec", physical, 1, 1e9},
    {u"ps", u"ps", u"psec", physical, 1, 1e12},
    {u"min", u"min", u"minute minutes", physical, 60, 1},
    {u"h", u"h", u"hour hours", physical, 3600, 1},
    {u"d", u"d", u"day days", physical, 86400, 1},
};

constexpr Line angles[] = {
    {u"rad", u"rad", u"radian", physical, 1, 1},
    {u"mrad", u"mrad", u"", physical, 1, 1000},
    {u"deg", u"\u00B0", u"\u00B0 degree degrees", physical, std::numbers::pi, 180},
    {u"gon", u"gon", u"grad", physical, std::numbers::pi, 200},
};

constexpr Line velocities[] = {
    {u"m/s", u"m/s", u"", physical, 1, 1},
    {u"km/s", u"km/s", u"", physical, 1000, 1},
    {u"cm/s", u"cm/s", u"", physical, 1, 100},
    {u"mm/s", u"mm/s", u"", physical, 1, 1000},
    {u"\u00B5m/s", u"\u00B5m/s", u"um/s", physical, 1, 1e6},
    {u"km/h", u"km/h", u"kmh", physical, 1000, 3600},
    {u"pixel/s", u"pixel/s", u"px/s", pixels, 1, 1},
    {u"voxel/s", u"voxel/s", u"vx/s", voxels, 1, 1},
};

constexpr Line accelerations[] = {
    {u"m/s^2", u"m/s\u00B2", u"", physical, 1, 1},
    {u"km/s^2", u"km/s\u00B2", u"", physical, 1000, 1},
    {u"cm/s^2", u"cm/s\u00B2", u"", physical, 1, 100},
    {u"mm/s^2", u"mm/s\u00B2", u"", physical, 1, 1000},
    {u"\u00B5m/s^2", u"\u00B5m/s\u00B2", u"um/s^2", physical, 1, 1e6},
    {u"pixel/s^2", u"pixel/s\u00B2", u"px/s^2", pixels, 1, 1},
    {u"voxel/s^2", u"voxel/s\u00B2", u"vx/s^2", voxels, 1, 1},
};

constexpr Line temperatures[] = {
    {u"K", u"K", u"kelvin", physical, 1, 1},
    {u"\u00B0C", u"\u00B0C", u"degC", physical, 1, 1, 273.15},
    {u"\u00B0F", u"\u00B0F", u"degF", physical, 5, 9, 459.67 * 5 / 9},
};

template <std::size_t count>
std::vector<Unit> unitsOf(const Line (&lines)[count])
{
    std::vector<Unit> units;
    for (const Line& line : lines) {
        std::vector<QString> aliases;
        for (const QStringView alias : line.aliases.split(u' ', Qt::SkipEmptyParts)) {
            aliases.push_back(alias.toString());
        }
        units.push_back({line.id.toString(), line.label.toString(), aliases, line.quantity, line.numerator,
                         line.denominator, line.offset});
    }
    return units;
}

/// One sign for micro, one way to write a square.
QString normalized(QString id)
{
    return id.replace(QChar(u'\u03BC'), QChar(u'\u00B5')).replace(QChar(u'\u00B2'), QStringLiteral("^2"));
}

double inUnit(double value, const QString& from, const QString& to)
{
    static const TimeUnits units;
    return units.GetScale(from, to).getScaled(value);
}

/// Beyond this many seconds a clock text has no meaning, and milliseconds leave 64 bits.
constexpr double longestClock = 1e12;

/// "1:02:03.5" of milliseconds; without hours "62:03.5".
QString clockText(long long milliseconds, bool withHours)
{
    const auto twoDigits = [](long long value) {
        return QStringLiteral("%1").arg(value, 2, 10, QLatin1Char('0'));
    };
    const long long minutes = milliseconds / 60'000;
    QString text = withHours ? QStringLiteral("%1:%2").arg(minutes / 60).arg(twoDigits(minutes % 60))
                             : QString::number(minutes);
    text += QLatin1Char(':') + twoDigits(milliseconds / 1000 % 60);
    if (milliseconds % 1000 != 0) {
        text += QStringLiteral(".%1").arg(milliseconds % 1000, 3, 10, QLatin1Char('0'));
        while (text.endsWith(QLatin1Char('0'))) {
            text.chop(1);
        }
    }
    return text;
}

QString toClockString(double value, const QString& unit, const QString& clockUnit)
{
    const double seconds = inUnit(value, unit, TimeUnits::Second);
    if (!(std::abs(seconds) < longestClock)) {
        return QStringLiteral("%1 %2").arg(inUnit(value, unit, clockUnit)).arg(clockUnit);
    }
    const long long milliseconds = std::llround(std::abs(seconds) * 1000.0);
    const QString sign = seconds < 0.0 && milliseconds != 0 ? QStringLiteral("-") : QString();
    return sign + clockText(milliseconds, clockUnit == TimeUnits::Hour) + QLatin1Char(' ') + clockUnit;
}

} // namespace

Units::Units(std::vector<Unit> units) : m_units(std::move(units)) {}

Units::~Units() = default;

bool Units::CanScale(const QString& from, const QString& to) const
{
    const Unit* source = find(from, true);
    const Unit* target = find(to, true);
    return source != nullptr && target != nullptr && source->quantity == target->quantity;
}

Zt::LinearScale Units::GetScale(const QString& from, const QString& to) const
{
    if (!CanScale(from, to)) {
        raise(InvalidArgumentError(QStringLiteral("Cannot scale from unit '%1' to unit '%2'").arg(from, to)));
    }
    const Unit& source = *find(from, true);
    const Unit& target = *find(to, true);
    const double factor = (source.numerator * target.denominator) / (source.denominator * target.numerator);
    const double offset = (source.offset - target.offset) * target.denominator / target.numerator;
    return {factor, offset, to, QString()};
}

bool Units::ContainsUnitId(const QString& id, bool withAliases) const
{
    return find(id, withAliases) != nullptr;
}

QString Units::GetLabel(const QString& id) const
{
    const Unit* unit = find(id, true);
    return unit == nullptr ? QString() : unit->label;
}

const Unit* Units::find(const QString& id, bool withAliases) const
{
    const QString spelling = withAliases ? normalized(id) : id;
    const auto unit = std::find_if(m_units.begin(), m_units.end(), [&](const Unit& candidate) {
        const auto& aliases = candidate.aliases;
        return candidate.id == spelling ||
               (withAliases && std::find(aliases.begin(), aliases.end(), spelling) != aliases.end());
    });
    return unit == m_units.end() ? nullptr : &*unit;
}

LengthUnits::LengthUnits() : Units(unitsOf(lengths)) {}

TimeUnits::TimeUnits() : Units(unitsOf(times)) {}

QString TimeUnits::toHourString(double value, const QString& unit)
{
    return toClockString(value, unit, Hour);
}

QString TimeUnits::toMinuteString(double value, const QString& unit)
{
    return toClockString(value, unit, Minute);
}

QString TimeUnits::toNiceString(double value, const QString& unit)
{
    constexpr double almostMinute = 59.9995;
    constexpr double almostHour = 3599.9995;
    const double seconds = inUnit(value, unit, Second);
    if (seconds == 0.0 || !std::isfinite(seconds)) {
        return QStringLiteral("%1 s").arg(seconds);
    }
    if (std::abs(seconds) >= almostMinute) {
        return std::abs(seconds) >= almostHour ? toHourString(value, unit) : toMinuteString(value, unit);
    }
    QString text;
    for (const QString* id : {&Second, &Millisecond, &Microsecond, &Nanosecond, &Picosecond}) {
        // The rounded text decides, so that 999.9999999 µs reads "1 ms".
        const QString number = QString::number(inUnit(value, unit, *id), 'g', 6);
        text = QStringLiteral("%1 %2").arg(number, *id);
        if (std::abs(number.toDouble()) >= 1.0) {
            break;
        }
    }
    return text;
}

AngleUnits::AngleUnits() : Units(unitsOf(angles)) {}

VelocityUnits::VelocityUnits() : Units(unitsOf(velocities)) {}

AccelerationUnits::AccelerationUnits() : Units(unitsOf(accelerations)) {}

TemperatureUnits::TemperatureUnits() : Units(unitsOf(temperatures)) {}

} // namespace RTE
