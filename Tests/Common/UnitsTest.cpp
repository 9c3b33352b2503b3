// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/UnitsRegistry.h"
#include "Tests/Support/Raises.h"

#include <limits>
#include <numbers>
#include <set>

namespace
{

using RTE::TimeUnits;
using RTE::UnitsRegistry;

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

TEST(Units, ConvertsWithOneRounding)
{
    struct Case
    {
        double value;
        const char* from;
        const char* to;
        double expected;
    };
    const Case cases[] = {
        {1.0, "inch", "mm", 25.4},    {25.4, "mm", "inch", 1.0},   {1.0, "mm", "m", 0.001},
        {3.0, "km", "µm", 3e9},       {7.0, "um", "nm", 7000.0},   {7.0, "μm", "mm", 0.007},
        {2.0, "h", "ps", 7.2e15},     {1.0, "ps", "s", 1e-12},     {180.0, "°", "rad", std::numbers::pi},
        {400.0, "gon", "deg", 360.0}, {36.0, "km/h", "m/s", 10.0}, {1.5, "mm/s²", "m/s^2", 0.0015},
        {20.0, "°C", "K", 293.15},    {-40.0, "°F", "°C", -40.0},  {5.0, "px", "pixel", 5.0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.from);
        const RTE::Units& units = UnitsRegistry::getInstance().getUnits(text(c.from), true);
        ASSERT_TRUE(units.CanScale(text(c.from), text(c.to)));
        const Zt::LinearScale scale = units.GetScale(text(c.from), text(c.to));
        EXPECT_DOUBLE_EQ(scale.getScaled(c.value), c.expected);
        EXPECT_EQ(scale.getUnit(), text(c.to));
    }
}

TEST(Units, DoesNotConvertBetweenQuantities)
{
    const RTE::LengthUnits lengths;
    EXPECT_FALSE(lengths.CanScale(RTE::LengthUnits::Pixel, RTE::LengthUnits::Meter));
    EXPECT_FALSE(lengths.CanScale(RTE::LengthUnits::Pixel, RTE::LengthUnits::Voxel));
    EXPECT_FALSE(lengths.CanScale(text("m"), text("s")));
    EXPECT_FALSE(lengths.CanScale(QString(), QString()));
    EXPECT_TRUE(
        TestSupport::raises<RTE::InvalidArgumentError>("Cannot scale from unit 'pixel' to unit 'm'", [&] {
            static_cast<void>(lengths.GetScale(RTE::LengthUnits::Pixel, RTE::LengthUnits::Meter));
        }));
}

TEST(UnitsRegistry, IdsAndAliasesNameOneUnitOnly)
{
    std::set<QString> spellings;
    for (const auto& family : UnitsRegistry::getInstance().getFamilies()) {
        for (const RTE::Unit& unit : family->GetUnits()) {
            EXPECT_TRUE(spellings.insert(unit.id).second) << unit.id.toStdString();
            EXPECT_FALSE(unit.label.isEmpty());
            for (const QString& alias : unit.aliases) {
                EXPECT_TRUE(spellings.insert(alias).second) << alias.toStdString();
            }
        }
    }
    EXPECT_TRUE(UnitsRegistry::getInstance().containsUnitId(text("us"), true));
    EXPECT_FALSE(UnitsRegistry::getInstance().containsUnitId(text("us"), false));
    EXPECT_FALSE(UnitsRegistry::getInstance().containsUnitId(text("MM"), true));
    EXPECT_TRUE(TestSupport::raises<RTE::InvalidArgumentError>("Unknown unit: counts", [] {
        static_cast<void>(UnitsRegistry::getInstance().getUnits(text("counts"), true));
    }));
}

TEST(UnitsRegistry, LabelsReadAsAUserWritesThem)
{
    const UnitsRegistry& registry = UnitsRegistry::getInstance();
    EXPECT_EQ(registry.getLabelForUnitId(RTE::AngleUnits::Degree), text("°"));
    EXPECT_EQ(registry.getLabelForUnitId(text("um/s^2")), text("µm/s²"));
    EXPECT_EQ(registry.getLabelForUnitId(text("counts")), text("counts"));
    EXPECT_EQ(registry.getLabelForUnitId(QString()), QString());
}

TEST(TimeUnits, TextsForTheUser)
{
    using Format = QString (*)(double, const QString&);
    struct Case
    {
        Format format;
        double value;
        const char* unit;
        const char* expected;
    };
    const Format nice = TimeUnits::toNiceString;
    const Format hours = TimeUnits::toHourString;
    const Format minutes = TimeUnits::toMinuteString;
    const Case cases[] = {
        {nice, 0.0, "µs", "0 s"},
        {nice, 250.0, "µs", "250 µs"},
        {nice, 2500.0, "us", "2.5 ms"},
        {nice, 999.99999999, "µs", "1 ms"},
        {nice, -0.0123456789, "s", "-12.3457 ms"},
        {nice, 0.25, "ps", "0.25 ps"},
        {nice, 59.5, "s", "59.5 s"},
        {nice, 59.9999, "s", "1:00 min"},
        {nice, -90.0, "s", "-1:30 min"},
        {nice, 3599.9999, "s", "1:00:00 h"},
        {nice, 2.5, "d", "60:00:00 h"},
        {nice, std::numeric_limits<double>::infinity(), "s", "inf s"},
        {hours, 5405.25, "s", "1:30:05.25 h"},
        {hours, 36.0, "s", "0:00:36 h"},
        {hours, -0.0001, "s", "0:00:00 h"},
        {hours, 3.6e15, "s", "1e+12 h"},
        {minutes, 90.0875, "min", "90:05.25 min"},
        {minutes, 59.9996, "s", "1:00 min"},
        {minutes, std::numeric_limits<double>::quiet_NaN(), "s", "nan min"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(c.format(c.value, text(c.unit)), text(c.expected));
    }
    EXPECT_TRUE(TestSupport::raises<RTE::InvalidArgumentError>("Cannot scale from unit 'mm' to unit 's'", [] {
        static_cast<void>(TimeUnits::toNiceString(1.0, text("mm")));
    }));
}

} // namespace
