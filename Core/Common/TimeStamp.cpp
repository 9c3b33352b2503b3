// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/TimeStamp.h"

#include "Core/Common/Raise.h"

#include <QDate>
#include <QDateTime>
#include <QRegularExpression>

#include <cstdlib>

namespace RTE
{

namespace
{

constexpr long long picosecondsPerSecond = 1'000'000'000'000;
constexpr long long secondsPerDay = 86'400;
constexpr long long julianDayOfEpoch = 2'440'588;

long long checkedSum(long long a, long long b)
{
    long long sum = 0;
    if (__builtin_add_overflow(a, b, &sum)) {
        raise(OutOfRangeError(QStringLiteral("seconds")));
    }
    return sum;
}

long long checkedDifference(long long a, long long b)
{
    long long difference = 0;
    if (__builtin_sub_overflow(a, b, &difference)) {
        raise(OutOfRangeError(QStringLiteral("seconds")));
    }
    return difference;
}

unsigned long long picoseconds(const QString& digits)
{
    return digits.left(12).leftJustified(12, QLatin1Char('0')).toULongLong();
}

/// Seconds east of Greenwich of "Z", "+hh", "+hhmm", "-hh:mm"; 0 for the empty text.
long long zoneOffset(QString zone)
{
    if (zone.isEmpty() || zone == QStringLiteral("Z")) {
        return 0;
    }
    zone.remove(QLatin1Char(':'));
    const long long seconds = zone.mid(1, 2).toLongLong() * 3600 + zone.mid(3, 2).toLongLong() * 60;
    return zone.startsWith(QLatin1Char('-')) ? -seconds : seconds;
}

QString twoDigits(long long value)
{
    return QStringLiteral("%1").arg(value, 2, 10, QLatin1Char('0'));
}

/// "", ".125", ".000001" …: the shortest multiple of three digits that is exact.
QString fraction(unsigned long long picoseconds)
{
    if (picoseconds == 0) {
        return {};
    }
    QString digits = QStringLiteral(".%1").arg(picoseconds, 12, 10, QLatin1Char('0'));
    while (digits.endsWith(QStringLiteral("000"))) {
        digits.chop(3);
    }
    return digits;
}

QString zoneText(long long offset)
{
    const long long minutes = std::abs(offset) / 60;
    return QLatin1Char(offset < 0 ? '-' : '+') + twoDigits(minutes / 60) + QLatin1Char(':') +
           twoDigits(minutes % 60);
}

long long floorDivide(long long value, long long divisor)
{
    return value / divisor - (value % divisor < 0 ? 1 : 0);
}

} // namespace

TimeSpan::TimeSpan(long long seconds, long long picoseconds)
    : m_seconds(checkedSum(seconds, picoseconds / picosecondsPerSecond)),
      m_picoseconds(picoseconds % picosecondsPerSecond)
{
    if (m_seconds > 0 && m_picoseconds < 0) {
        --m_seconds;
        m_picoseconds += picosecondsPerSecond;
    } else if (m_seconds < 0 && m_picoseconds > 0) {
        ++m_seconds;
        m_picoseconds -= picosecondsPerSecond;
    }
}

double TimeSpan::ToSecondsAsDouble() const noexcept
{
    return static_cast<double>(m_seconds) +
           static_cast<double>(m_picoseconds) / static_cast<double>(picosecondsPerSecond);
}

TimeStamp::TimeStamp(long long seconds, unsigned long long picoseconds)
    : m_seconds(checkedSum(seconds, static_cast<long long>(picoseconds / picosecondsPerSecond))),
      m_picoseconds(picoseconds % picosecondsPerSecond)
{
}

TimeStamp TimeStamp::FromISO8601String(const QString& text)
{
    static const QRegularExpression form(
        QStringLiteral("^\\s*(\\d{4})-?(\\d\\d)-?(\\d\\d)"
                       "(?:[T ](\\d\\d):?(\\d\\d)(?::?([0-5]\\d|60)(?:[.,](\\d+))?)?"
                       "\\s*(Z|[+-](?:[01]\\d|2[0-3])(?::?[0-5]\\d)?)?)?\\s*$"));
    const QRegularExpressionMatch match = form.match(text.toUpper());
    const QDate date(match.captured(1).toInt(), match.captured(2).toInt(), match.captured(3).toInt());
    const long long hour = match.captured(4).toLongLong();
    const long long minute = match.captured(5).toLongLong();
    const long long second = match.captured(6).toLongLong();
    const unsigned long long afterSecond = picoseconds(match.captured(7));
    const bool endOfDay = hour == 24 && minute == 0 && second == 0 && afterSecond == 0;
    if (!match.hasMatch() || !date.isValid() || (hour > 23 && !endOfDay) || minute > 59) {
        raise(ParseError(QStringLiteral("'%1' is not an ISO 8601 time stamp").arg(text)));
    }
    const long long days = date.toJulianDay() - julianDayOfEpoch;
    const long long seconds = days * secondsPerDay + hour * 3600 + minute * 60 + second;
    return {seconds - zoneOffset(match.captured(8)), afterSecond};
}

QString TimeStamp::ToISO8601String(const E_Timezone& timezone) const
{
    constexpr long long firstSecond = -62'135'596'800;
    constexpr long long endSecond = 253'402'300'800;
    const bool isLocal = timezone == E_Timezone::LocalTime;
    const bool known = m_seconds >= firstSecond && m_seconds < endSecond;
    // Offsets of the 19th century count seconds, which the text cannot tell: whole minutes keep the instant.
    const long long offset =
        isLocal && known ? QDateTime::fromSecsSinceEpoch(m_seconds).offsetFromUtc() / 60 * 60 : 0;
    const long long seconds = known ? m_seconds + offset : m_seconds;
    if (seconds < firstSecond || seconds >= endSecond) {
        raise(InvalidRequest(QStringLiteral("Time stamp lies outside the years 1 to 9999")));
    }
    const long long day = floorDivide(seconds, secondsPerDay);
    const long long time = seconds - day * secondsPerDay;
    const QDate date = QDate::fromJulianDay(day + julianDayOfEpoch);
    return QStringLiteral("%1-%2-%3T%4:%5:%6%7%8")
        .arg(date.year(), 4, 10, QLatin1Char('0'))
        .arg(twoDigits(date.month()), twoDigits(date.day()), twoDigits(time / 3600),
             twoDigits(time / 60 % 60), twoDigits(time % 60), fraction(m_picoseconds),
             isLocal ? zoneText(offset) : QStringLiteral("Z"));
}

void TimeStamp::AddTimeSpan(const TimeSpan& span)
{
    const long long sum = static_cast<long long>(m_picoseconds) + span.GetPicoSeconds();
    const long long carry = floorDivide(sum, picosecondsPerSecond);
    m_seconds = checkedSum(checkedSum(m_seconds, span.GetSeconds()), carry);
    m_picoseconds = static_cast<unsigned long long>(sum - carry * picosecondsPerSecond);
}

TimeSpan TimeStamp::operator-(const TimeStamp& earlier) const
{
    return {checkedDifference(m_seconds, earlier.m_seconds),
            static_cast<long long>(m_picoseconds) - static_cast<long long>(earlier.m_picoseconds)};
}

} // namespace RTE
