// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/TimeStamp.h"
#include "Tests/Support/Raises.h"

#include <ctime>
#include <limits>

namespace
{

using RTE::PicoSeconds;
using RTE::TimeSpan;
using RTE::TimeStamp;
using TestSupport::raises;
using Zone = TimeStamp::E_Timezone;

constexpr long long maximum = std::numeric_limits<long long>::max();

/// A zone for the process, put back at the end.
class SystemZone
{
public:
    explicit SystemZone(const char* zone) : m_before(qgetenv("TZ")) { set(zone); }
    ~SystemZone() { set(m_before.isNull() ? nullptr : m_before.constData()); }

private:
    static void set(const char* zone)
    {
        zone == nullptr ? qunsetenv("TZ") : qputenv("TZ", zone);
        tzset();
    }

    QByteArray m_before;
};

TEST(TimeSpan, ShortNegativeSpanKeepsItsDigits)
{
    EXPECT_EQ(PicoSeconds(-1).ToSecondsAsDouble(), -1e-12);
    EXPECT_EQ((TimeStamp(5, 1) - TimeStamp(5, 3)).ToSecondsAsDouble(), -2e-12);
    EXPECT_EQ((TimeStamp(4, 999'999'999'999) - TimeStamp(5, 0)).ToSecondsAsDouble(), -1e-12);
    EXPECT_EQ(PicoSeconds(2'500'000'000'000).ToSecondsAsDouble(), 2.5);
    EXPECT_EQ(TimeSpan(-3, 500'000'000'000), TimeSpan(-2, -500'000'000'000));
    EXPECT_LT(TimeSpan(-1, 1), PicoSeconds(-1));
    EXPECT_LT(PicoSeconds(-1), TimeSpan());
}

TEST(TimeStamp, CarriesInBothDirections)
{
    EXPECT_EQ(TimeStamp(1, 2'000'000'000'003), TimeStamp(3, 3));
    TimeStamp stamp;
    EXPECT_EQ(stamp, TimeStamp(0, 0));
    stamp.AddTimeSpan(PicoSeconds(-1));
    EXPECT_EQ(stamp.GetSecondsSinceEpoch(), -1);
    EXPECT_EQ(stamp.GetPicoSeconds(), 999'999'999'999U);
    stamp.AddTimeSpan(TimeSpan(1, 2));
    EXPECT_EQ(stamp, TimeStamp(1, 1));
    EXPECT_GE(stamp, TimeStamp(1, 0));
    EXPECT_GT(TimeStamp(1, 0), TimeStamp(0, 999'999'999'999));
}

TEST(TimeStamp, DifferenceReachesOverCenturies)
{
    const TimeStamp now(1'700'000'000, 250'000'000'000);
    EXPECT_EQ((now - TimeStamp()).ToSecondsAsDouble(), 1'700'000'000.25);
    TimeStamp back = now;
    back.AddTimeSpan(TimeStamp() - now);
    EXPECT_EQ(back, TimeStamp());
}

TEST(TimeStamp, OverflowIsRaised)
{
    const QString text = QStringLiteral("seconds");
    TimeStamp last(maximum, 999'999'999'999);
    EXPECT_TRUE(raises<RTE::OutOfRangeError>(text, [&] { last.AddTimeSpan(PicoSeconds(1)); }));
    EXPECT_TRUE(raises<RTE::OutOfRangeError>(text, [&] { static_cast<void>(last - TimeStamp(-1, 0)); }));
    EXPECT_TRUE(raises<RTE::OutOfRangeError>(text, [&] { TimeStamp(maximum, 1'000'000'000'000); }));
    EXPECT_EQ(last, TimeStamp(maximum, 999'999'999'999));
}

TEST(TimeStamp, ReadsTheFormsOfIso8601)
{
    struct Case
    {
        const char* text;
        long long seconds;
        unsigned long long picoseconds;
    };
    const Case cases[] = {
        {"1970-01-01", 0, 0},
        {"1970-01-01T00:00:00Z", 0, 0},
        {"1969-12-31T23:59:59.5Z", -1, 500'000'000'000},
        {"2024-02-29T12:30:00.125+01:00", 1'709'206'200, 125'000'000'000},
        {"2024-02-29 12:30:00,125+01", 1'709'206'200, 125'000'000'000},
        {"20240229T113000.125z", 1'709'206'200, 125'000'000'000},
        {" 2024-02-29t11:30 ", 1'709'206'200, 0},
        {"2024-02-29T06:00:00-05:30", 1'709'206'200, 0},
        {"2023-12-31T24:00:00Z", 1'704'067'200, 0},
        {"2016-12-31T23:59:60Z", 1'483'228'800, 0},
        {"1970-01-01T00:00:00.0000000000019Z", 0, 1},
        {"9999-12-31T23:59:59Z", 253'402'300'799, 0},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(TimeStamp::FromISO8601String(QString::fromLatin1(c.text)),
                  TimeStamp(c.seconds, c.picoseconds))
            << c.text;
    }
}

TEST(TimeStamp, RefusesOtherTexts)
{
    for (const char* text : {"", "yesterday", "2023-02-29", "2024-13-01", "0000-01-01", "2024-01-01T25:00",
                             "2024-01-01T24:00:01", "2024-01-01T24:00:00.5", "2024-01-01T12:00:00+24:00",
                             "2024-01-01T12:60", "2024-01-01T12:00:61", "2024-01-01T",
                             "2024-01-01T12:00:00+1", "2024-01-01T12:00:00Zulu", "24-01-01"}) {
        const QString given = QString::fromLatin1(text);
        EXPECT_TRUE(raises<RTE::ParseError>(QStringLiteral("'%1' is not an ISO 8601 time stamp").arg(given),
                                            [&] { static_cast<void>(TimeStamp::FromISO8601String(given)); }));
    }
}

TEST(TimeStamp, WritesWhatItReads)
{
    const std::pair<TimeStamp, const char*> cases[] = {
        {TimeStamp(), "1970-01-01T00:00:00Z"},
        {TimeStamp(-1, 500'000'000'000), "1969-12-31T23:59:59.500Z"},
        {TimeStamp(1'709'206'200, 1), "2024-02-29T11:30:00.000000000001Z"},
        {TimeStamp(-62'135'596'800, 0), "0001-01-01T00:00:00Z"},
        {TimeStamp(253'402'300'799, 120'000), "9999-12-31T23:59:59.000000120Z"},
    };
    for (const auto& [stamp, text] : cases) {
        EXPECT_EQ(stamp.ToISO8601String(Zone::UTC), QString::fromLatin1(text));
        EXPECT_EQ(TimeStamp::FromISO8601String(QString::fromLatin1(text)), stamp);
    }
    const QString outside = QStringLiteral("Time stamp lies outside the years 1 to 9999");
    for (const long long seconds : {-62'135'596'801LL, 253'402'300'800LL, maximum, -maximum - 1}) {
        for (const Zone zone : {Zone::UTC, Zone::LocalTime}) {
            EXPECT_TRUE(raises<RTE::InvalidRequest>(
                outside, [&] { static_cast<void>(TimeStamp(seconds, 0).ToISO8601String(zone)); }));
        }
    }
}

TEST(TimeStamp, LocalTimeCarriesItsOffset)
{
    const SystemZone zone("NST3:30NDT,M3.2.0,M11.1.0");
    const TimeStamp winter(1'704'067'200, 5'000'000);
    const TimeStamp summer(1'719'792'000, 0);
    EXPECT_EQ(winter.ToISO8601String(Zone::LocalTime), QStringLiteral("2023-12-31T20:30:00.000005-03:30"));
    EXPECT_EQ(summer.ToISO8601String(Zone::LocalTime), QStringLiteral("2024-06-30T21:30:00-02:30"));
    EXPECT_EQ(TimeStamp::FromISO8601String(summer.ToISO8601String(Zone::LocalTime)), summer);
    EXPECT_EQ(TimeStamp::FromISO8601String(QStringLiteral("2024-01-01T00:00:00")).GetSecondsSinceEpoch(),
              winter.GetSecondsSinceEpoch());
}

} // namespace
