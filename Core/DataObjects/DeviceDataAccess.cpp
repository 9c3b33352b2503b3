// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/DeviceDataAccess.h"

#include <array>
#include <cmath>
#include <utility>

namespace DataObjects
{

namespace
{

using Record = RTE::DeviceDataT<double>;

/// A number of a record in physical units; NaN where unknown.
struct Item
{
    const char* key;
    const char* shortForm; ///< null unless it is one of the statistics
    double (*physical)(const Record&);
};

double scaled(const Record& record, double value)
{
    return record.getScale().getScaled(value);
}

/// The raw values that become the smallest and the largest: a negative factor turns them round.
std::pair<double, double> extremes(const Record& record)
{
    const std::pair ordered(record.getMinimum(), record.getMaximum());
    return record.getScale().getFactor() < 0.0 ? std::pair(ordered.second, ordered.first) : ordered;
}

const std::array<Item, 6> items{{
    {"Average", "avg", [](const Record& record) { return scaled(record, record.getAverage()); }},
    {"Minimum", "min", [](const Record& record) { return scaled(record, extremes(record).first); }},
    {"Maximum", "max", [](const Record& record) { return scaled(record, extremes(record).second); }},
    {"StandardDeviation", "stdDev",
     [](const Record& record) {
         return std::abs(record.getScale().getFactor()) * record.getStandardDeviation();
     }},
    {"Reference", nullptr,
     [](const Record& record) { return scaled(record, record.getReference().value_or(0.0)); }},
    {"Value", nullptr,
     [](const Record& record) {
         return scaled(record, record.getTrace().empty() ? record.getAverage() : record.getTrace().front());
     }},
}};

QString numberText(double value)
{
    return QString::number(value, 'g', 6);
}

} // namespace

DeviceDataAccess::DeviceDataAccess(RTE::DeviceDataT<double> record) : m_record(std::move(record)) {}

QString DeviceDataAccess::getValue(const QString& key) const
{
    if (key == QLatin1String("NamedValue")) {
        return m_record.getNamedValue().value_or(QString());
    }
    if (key == QLatin1String("Reference") && !m_record.hasReference()) {
        return {};
    }
    for (const Item& item : items) {
        if (key == QLatin1String(item.key)) {
            return numberText(item.physical(m_record));
        }
    }
    return {};
}

QString DeviceDataAccess::getValueWithUnit(const QString& key) const
{
    return QStringLiteral("%1 %2").arg(getValue(key), m_record.getUnit());
}

QString DeviceDataAccess::getValueAsString() const
{
    if (m_record.hasNamedValue()) {
        return getValue(QStringLiteral("NamedValue"));
    }
    const std::size_t samples = m_record.getTrace().size();
    if (m_record.getKind() == RTE::DeviceDataKind::SingleValue && !std::isnan(m_record.getAverage())) {
        const QString average = getValue(QStringLiteral("Average"));
        return samples > 1 ? average + QStringLiteral(" ...") : average;
    }
    if (samples == 1) {
        return getValue(QStringLiteral("Value"));
    }
    const QList<QString> statistics = getValuesAsList();
    if (statistics.size() == 4) {
        return statistics.join(QStringLiteral(" | "));
    }
    return m_record.hasReference() ? getValue(QStringLiteral("Reference")) : QStringLiteral("---");
}

QList<QString> DeviceDataAccess::getValuesAsList() const
{
    QList<QString> texts;
    for (const Item& item : items) {
        const double value = item.physical(m_record);
        if (item.shortForm != nullptr && !std::isnan(value)) {
            texts.append(QStringLiteral("%1: %2").arg(QLatin1String(item.shortForm), numberText(value)));
        }
    }
    return texts;
}

bool DeviceDataAccess::isTrace() const noexcept
{
    return !m_record.hasNamedValue() && m_record.getKind() != RTE::DeviceDataKind::SingleValue &&
           m_record.getTrace().size() > 1;
}

} // namespace DataObjects
