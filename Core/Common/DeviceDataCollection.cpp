// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/DeviceDataCollection.h"

#include "Core/Common/Raise.h"

#include <QLocale>

#include <cmath>
#include <utility>

namespace RTE
{

namespace
{

/// A count up to this is taken as it is stored. A larger one may be damage, and without its records it must
/// not keep anybody busy.
constexpr unsigned int plausibleCount = 1000;

/// Writes the items of one record under their indexed names.
class RecordWriter
{
public:
    RecordWriter(I_AttributesSink& sink, unsigned int index) : m_sink(sink), m_index(QString::number(index))
    {
    }

    void add(const QString& item, const QString& text) { m_sink.Add(item + m_index, text); }
    void add(const QString& item, int value) { add(item, QString::number(value)); }
    void add(const QString& item, double value)
    {
        if (!std::isnan(value)) {
            add(item, QString::number(value, 'g', QLocale::FloatingPointShortest));
        }
    }
    void add(const QString& item, const Zt::LinearScale& scale)
    {
        if (scale != Zt::LinearScale(1.0, 0.0, QString(), QString())) {
            add(item + QStringLiteral("Factor"), scale.getFactor());
            add(item + QStringLiteral("Offset"), scale.getOffset());
            add(item + QStringLiteral("Unit"), scale.getUnit());
            add(item + QStringLiteral("Description"), scale.getDescription());
        }
    }
    void add(const QString& item, const std::vector<double>& list)
    {
        if (!list.empty()) {
            m_sink.AddArray(item + m_index, list.size(), list.data());
        }
    }

private:
    I_AttributesSink& m_sink;
    QString m_index;
};

/// Reads the items of one record.
class RecordReader
{
public:
    RecordReader(const I_AttributesSource& source, unsigned int index)
        : m_source(source), m_index(QString::number(index))
    {
    }

    [[nodiscard]] std::optional<QString> text(const QString& item) const
    {
        return m_source.GetText(item + m_index);
    }
    [[nodiscard]] std::optional<double> number(const QString& item) const
    {
        const std::optional<QString> found = text(item);
        return found ? std::optional<double>(found->toDouble()) : std::nullopt;
    }
    [[nodiscard]] double number(const QString& item, double fallback) const
    {
        return number(item).value_or(fallback);
    }
    [[nodiscard]] std::vector<double> list(const QString& item) const
    {
        return m_source.GetArray(item + m_index);
    }
    [[nodiscard]] Zt::LinearScale scale(const QString& item) const
    {
        return {number(item + QStringLiteral("Factor"), 1.0), number(item + QStringLiteral("Offset"), 0.0),
                text(item + QStringLiteral("Unit")).value_or(QString()),
                text(item + QStringLiteral("Description")).value_or(QString())};
    }

private:
    const I_AttributesSource& m_source;
    QString m_index;
};

void write(RecordWriter& writer, const DeviceDataCollection::Record& record)
{
    writer.add(DeviceData::DEVDATANAME, record.getName());
    if (!record.getAlias().isEmpty()) {
        writer.add(DeviceData::DEVDATAALIAS, record.getAlias());
    }
    writer.add(DeviceData::DEVDATACLASS, static_cast<int>(record.getClass()));
    writer.add(DeviceData::DEVDATAKIND, static_cast<int>(record.getKind()));
    writer.add(DeviceData::DEVDATASCALE, record.getScale());
    writer.add(DeviceData::DEVDATATRACESCALE, record.getTraceScale());
    if (record.hasNamedValue()) {
        writer.add(DeviceData::DEVDATANAMEDVALUE, *record.getNamedValue());
    }
    if (record.hasReference()) {
        writer.add(DeviceData::DEVDATAREFERENCE, *record.getReference());
    }
    writer.add(DeviceData::DEVDATAAVERAGE, record.getAverage());
    writer.add(DeviceData::DEVDATAMINIMUM, record.getMinimum());
    writer.add(DeviceData::DEVDATAMAXIMUM, record.getMaximum());
    writer.add(DeviceData::DEVDATASTANDARDDEVIATION, record.getStandardDeviation());
    if (record.hasRange()) {
        writer.add(DeviceData::DEVDATARANGEMINIMUM, record.getRange()->GetMin());
        writer.add(DeviceData::DEVDATARANGEMAXIMUM, record.getRange()->GetMax());
    }
    writer.add(DeviceData::DEVDATATRACE, record.getTrace());
}

DeviceDataStatic readStatic(const RecordReader& reader)
{
    const std::optional<QString> name = reader.text(DeviceData::DEVDATANAME);
    const DeviceClass unstored = name ? DeviceDataStatic().deviceClass : DeviceClass::Other;
    const auto deviceClass = reader.number(DeviceData::DEVDATACLASS, static_cast<double>(unstored));
    const bool known = deviceClass >= 0.0 && deviceClass <= static_cast<double>(DeviceClass::MeasuredAdc);
    const bool single =
        reader.number(DeviceData::DEVDATAKIND, 0.0) == static_cast<double>(DeviceDataKind::SingleValue);
    return {name.value_or(QString()),
            reader.text(DeviceData::DEVDATAALIAS).value_or(QString()),
            known ? static_cast<DeviceClass>(static_cast<int>(deviceClass)) : DeviceClass::Other,
            single ? DeviceDataKind::SingleValue : DeviceDataKind::Samples,
            reader.scale(DeviceData::DEVDATASCALE),
            reader.scale(DeviceData::DEVDATATRACESCALE)};
}

} // namespace

const DeviceDataCollection::Record& DeviceDataCollection::at(unsigned int index) const
{
    verifyIndex(index, m_records.size(), "index");
    return m_records[index];
}

void DeviceDataCollection::add(Record record)
{
    m_records.push_back(std::move(record));
}

void DeviceDataCollection::Write(I_AttributesSink& sink) const
{
    sink.Add(DeviceData::DEVDATASOURCE, QString::number(size()));
    for (unsigned int index = 0; index < size(); ++index) {
        RecordWriter writer(sink, index);
        write(writer, m_records[index]);
    }
}

unsigned int DeviceDataCollection::ReadCount(const I_AttributesSource& source)
{
    return source.GetText(DeviceData::DEVDATASOURCE).value_or(QString()).toUInt();
}

DeviceDataCollection::Record DeviceDataCollection::ReadAt(const I_AttributesSource& source,
                                                          unsigned int index)
{
    const RecordReader reader(source, index);
    Record record(DeviceDataT<double>(readStatic(reader), reader.list(DeviceData::DEVDATATRACE)));
    // A record stored without statistics keeps those of its trace.
    const DeviceDataStatistics ofTrace = record.getStatistics();
    record.setStatistics({reader.number(DeviceData::DEVDATAAVERAGE, ofTrace.average),
                          reader.number(DeviceData::DEVDATAMINIMUM, ofTrace.minimum),
                          reader.number(DeviceData::DEVDATAMAXIMUM, ofTrace.maximum),
                          reader.number(DeviceData::DEVDATASTANDARDDEVIATION, ofTrace.standardDeviation)});
    record.setNamedValue(reader.text(DeviceData::DEVDATANAMEDVALUE));
    record.setReference(reader.number(DeviceData::DEVDATAREFERENCE));
    const auto minimum = reader.number(DeviceData::DEVDATARANGEMINIMUM);
    const auto maximum = reader.number(DeviceData::DEVDATARANGEMAXIMUM);
    if (minimum && maximum) {
        record.setRange(RangeT<double>(*minimum, *maximum));
    }
    return record;
}

DeviceDataCollection DeviceDataCollection::Read(const I_AttributesSource& source)
{
    DeviceDataCollection collection;
    const unsigned int count = ReadCount(source);
    for (unsigned int index = 0; index < count; ++index) {
        if (count > plausibleCount && !source.GetText(DeviceData::DEVDATANAME + QString::number(index))) {
            break;
        }
        collection.add(ReadAt(source, index));
    }
    return collection;
}

} // namespace RTE
