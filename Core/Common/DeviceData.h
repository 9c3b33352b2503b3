// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Export.h"
#include "Core/Common/LinearScale.h"
#include "Core/Common/Range.h"

#include <QString>

#include <limits>
#include <optional>
#include <utility>
#include <vector>

namespace RTE
{

/// What kind of channel a device is: the flags "measured", rather than set or computed, and "ADC", an analog
/// input. The numbers are stored.
enum class DeviceClass
{
    Other = 0,
    Measured = 1,
    Adc = 2,
    MeasuredAdc = 3
};

/// Whether a record holds samples, as a trace or as their statistics, or one value that never was a trace.
/// The numbers are stored.
enum class DeviceDataKind
{
    Samples = 0,
    SingleValue = 1
};

/// What a channel has for good, whatever it measures.
struct DeviceDataStatic
{
    QString name;
    QString alias; ///< a second name given by the user; may be empty
    DeviceClass deviceClass = DeviceClass::Measured;
    DeviceDataKind kind = DeviceDataKind::Samples;
    Zt::LinearScale scale{1.0, 0.0, QString(), QString()};      ///< of the values, with their unit
    Zt::LinearScale traceScale{1.0, 0.0, QString(), QString()}; ///< of the index in the trace, mostly a time

    friend bool operator==(const DeviceDataStatic&, const DeviceDataStatic&) = default;
};

/// The record of one channel of a measuring device beside an image. All values are unscaled; getScale gives
/// the physical ones.
class DATAOBJECTS_COMMON_EXPORT DeviceData
{
public:
    /// \name Names of the stored attributes
    /// DEVDATASOURCE stands alone and holds the number of records as text. The others are followed by the
    /// index of the record: DEVDATANAME + "0". All are in the group "DevData".
    /// \{
    static const QString DEVDATASOURCE;
    static const QString DEVDATANAME;
    static const QString DEVDATAALIAS;
    static const QString DEVDATACLASS; ///< the number of DeviceClass
    static const QString DEVDATAKIND;  ///< the number of DeviceDataKind
    static const QString DEVDATANAMEDVALUE;
    static const QString DEVDATAREFERENCE;
    static const QString DEVDATAAVERAGE;
    static const QString DEVDATAMINIMUM;
    static const QString DEVDATAMAXIMUM;
    static const QString DEVDATASTANDARDDEVIATION;
    static const QString DEVDATARANGEMINIMUM;
    static const QString DEVDATARANGEMAXIMUM;
    static const QString DEVDATATRACE; ///< a list of double
    static const QString
        DEVDATASCALE; ///< followed by "Factor", "Offset", "Unit" or "Description" and the index
    static const QString DEVDATATRACESCALE; ///< likewise
    /// \}

    DeviceData() = default;
    explicit DeviceData(DeviceDataStatic properties) : m_static(std::move(properties)) {}

    [[nodiscard]] const DeviceDataStatic& getStatic() const noexcept { return m_static; }
    [[nodiscard]] QString getName() const { return m_static.name; }
    [[nodiscard]] QString getAlias() const { return m_static.alias; }
    [[nodiscard]] QString getUnit() const { return m_static.scale.getUnit(); }
    [[nodiscard]] const Zt::LinearScale& getScale() const noexcept { return m_static.scale; }
    [[nodiscard]] const Zt::LinearScale& getTraceScale() const noexcept { return m_static.traceScale; }
    [[nodiscard]] DeviceDataKind getKind() const noexcept { return m_static.kind; }
    [[nodiscard]] DeviceClass getClass() const noexcept { return m_static.deviceClass; }
    [[nodiscard]] bool isMeasured() const noexcept { return hasFlag(DeviceClass::Measured); }
    [[nodiscard]] bool isAdc() const noexcept { return hasFlag(DeviceClass::Adc); }

    /// A state instead of a number, such as "open".
    [[nodiscard]] bool hasNamedValue() const noexcept { return m_namedValue.has_value(); }
    [[nodiscard]] const std::optional<QString>& getNamedValue() const noexcept { return m_namedValue; }
    void setNamedValue(std::optional<QString> value) { m_namedValue = std::move(value); }

    friend bool operator==(const DeviceData&, const DeviceData&) = default;

private:
    [[nodiscard]] bool hasFlag(DeviceClass flag) const noexcept
    {
        return (static_cast<int>(m_static.deviceClass) & static_cast<int>(flag)) != 0;
    }

    DeviceDataStatic m_static;
    std::optional<QString> m_namedValue;
};

/// Statistics of samples; NaN where unknown.
struct DeviceDataStatistics
{
    double average = std::numeric_limits<double>::quiet_NaN();
    double minimum = std::numeric_limits<double>::quiet_NaN();
    double maximum = std::numeric_limits<double>::quiet_NaN();
    double standardDeviation = std::numeric_limits<double>::quiet_NaN();
};

/// A record with a trace of values and their statistics. Exists for `double`.
template <typename T>
class DeviceDataT : public DeviceData
{
public:
    DeviceDataT() = default;
    /// The statistics are those of the trace, see computeStatistics.
    explicit DeviceDataT(DeviceDataStatic properties, std::vector<T> trace = {});

    [[nodiscard]] double getAverage() const noexcept { return m_statistics.average; }
    [[nodiscard]] double getMinimum() const noexcept { return m_statistics.minimum; }
    [[nodiscard]] double getMaximum() const noexcept { return m_statistics.maximum; }
    [[nodiscard]] double getStandardDeviation() const noexcept { return m_statistics.standardDeviation; }
    [[nodiscard]] const DeviceDataStatistics& getStatistics() const noexcept { return m_statistics; }
    void setStatistics(const DeviceDataStatistics& statistics) noexcept { m_statistics = statistics; }
    /// Sets the statistics from the trace, NaN left out: the standard deviation is that of a sample (n - 1),
    /// 0 for one value. Without values all are NaN.
    void computeStatistics();

    /// The value that the channel should have.
    [[nodiscard]] const std::optional<double>& getReference() const noexcept { return m_reference; }
    [[nodiscard]] bool hasReference() const noexcept { return m_reference.has_value(); }
    void setReference(std::optional<double> reference) noexcept { m_reference = reference; }

    [[nodiscard]] const std::vector<T>& getTrace() const noexcept { return m_trace; }
    /// Leaves the statistics as they are, which may be those of more samples.
    void setTrace(std::vector<T> trace) { m_trace = std::move(trace); }

private:
    std::vector<T> m_trace;
    DeviceDataStatistics m_statistics;
    std::optional<double> m_reference;
};

/// A record that may also tell the range of its channel.
template <typename T>
class DeviceDataWithRangeT : public DeviceDataT<T>
{
public:
    DeviceDataWithRangeT() = default;
    DeviceDataWithRangeT(DeviceDataT<T> record, std::optional<RangeT<T>> range = {})
        : DeviceDataT<T>(std::move(record)), m_range(std::move(range))
    {
    }

    [[nodiscard]] bool hasRange() const noexcept { return m_range.has_value(); }
    [[nodiscard]] const std::optional<RangeT<T>>& getRange() const noexcept { return m_range; }
    void setRange(std::optional<RangeT<T>> range) noexcept { m_range = range; }

private:
    std::optional<RangeT<T>> m_range;
};

extern template class DATAOBJECTS_COMMON_EXPORT DeviceDataT<double>;
extern template class DATAOBJECTS_COMMON_EXPORT DeviceDataWithRangeT<double>;

} // namespace RTE
