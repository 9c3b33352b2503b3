// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Export.h"

#include <QString>

#include <compare>

namespace RTE
{

/// A signed duration, exact to the picosecond.
class DATAOBJECTS_COMMON_EXPORT TimeSpan
{
public:
    TimeSpan() noexcept = default;
    /// The sum of both; they may differ in sign, and the picoseconds may exceed a second.
    /// \throws RTE::OutOfRangeError if the seconds overflow
    TimeSpan(long long seconds, long long picoseconds);

    /// Whole seconds, cut towards zero.
    [[nodiscard]] long long GetSeconds() const noexcept { return m_seconds; }
    /// What the whole seconds leave, with the sign of the span.
    [[nodiscard]] long long GetPicoSeconds() const noexcept { return m_picoseconds; }
    [[nodiscard]] double ToSecondsAsDouble() const noexcept;

    friend constexpr auto operator<=>(const TimeSpan&, const TimeSpan&) = default;

private:
    // Both parts have the same sign, so that a short negative span keeps its digits as a double.
    long long m_seconds = 0;
    long long m_picoseconds = 0;
};

/// A duration of so many picoseconds; 64 bits of them reach about 106 days.
[[nodiscard]] inline TimeSpan PicoSeconds(long long count)
{
    return TimeSpan(0, count);
}

/// A point in time, exact to the picosecond, counted from the epoch 1970-01-01T00:00:00Z without leap
/// seconds.
class DATAOBJECTS_COMMON_EXPORT TimeStamp
{
public:
    /// How an ISO 8601 text names the time: in UTC with "Z", or in the system's time zone with its offset.
    enum class E_Timezone
    {
        UTC = 0,
        LocalTime = 1
    };

    /// The epoch.
    TimeStamp() noexcept = default;
    /// Seconds since the epoch, may be negative, plus picoseconds, which may exceed a second.
    /// \throws RTE::OutOfRangeError if the seconds overflow
    TimeStamp(long long seconds, unsigned long long picoseconds);

    /// Reads date and time in the extended or the basic form, such as "2024-02-29T12:30:00.125+01:00" or
    /// "20240229T123000Z". A date alone is its midnight, a time without zone counts as UTC so that a file
    /// reads the same everywhere. Digits beyond the picosecond are cut.
    /// \throws RTE::ParseError for any other text
    [[nodiscard]] static TimeStamp FromISO8601String(const QString& text);
    /// Writes "2024-02-29T12:30:00.125Z" with 0, 3, 6, 9 or 12 digits of the second, as many as are needed;
    /// FromISO8601String gives the same time stamp back.
    /// \throws RTE::InvalidRequest outside the years 1 to 9999
    [[nodiscard]] QString ToISO8601String(const E_Timezone& timezone) const;

    /// Whole seconds, the greatest that are not after the time stamp.
    [[nodiscard]] long long GetSecondsSinceEpoch() const noexcept { return m_seconds; }
    /// Picoseconds after the whole second, below 10^12.
    [[nodiscard]] unsigned long long GetPicoSeconds() const noexcept { return m_picoseconds; }

    /// Moves this time stamp.
    /// \throws RTE::OutOfRangeError if the seconds overflow
    void AddTimeSpan(const TimeSpan& span);
    /// \throws RTE::OutOfRangeError if the seconds overflow
    [[nodiscard]] TimeSpan operator-(const TimeStamp& earlier) const;

    friend constexpr auto operator<=>(const TimeStamp&, const TimeStamp&) = default;

private:
    long long m_seconds = 0;
    unsigned long long m_picoseconds = 0;
};

} // namespace RTE
