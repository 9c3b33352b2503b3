// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/DeviceDataCollection.h"
#include "Tests/Support/Raises.h"

#include <cmath>

namespace
{

using RTE::DeviceData;
using RTE::DeviceDataCollection;
using RTE::DeviceDataT;

/// Keeps what it is fed and gives it back.
class Attributes : public RTE::I_AttributesSink, public RTE::I_AttributesSource
{
public:
    void Add(const QString& name, const QString& value) override { texts[name] = value; }
    void AddArray(const QString& name, unsigned long long count, const double* data) override
    {
        lists[name].assign(data, data + count);
    }
    void AddArray(const QString&, unsigned long long, const float*) override { FAIL(); }
    void AddArray(const QString&, unsigned long long, const int*) override { FAIL(); }
    void AddArray(const QString&, unsigned long long, const unsigned short*) override { FAIL(); }
    [[nodiscard]] std::optional<QString> GetText(const QString& name) const override
    {
        const auto found = texts.find(name);
        return found == texts.end() ? std::nullopt : std::optional(found->second);
    }
    [[nodiscard]] std::vector<double> GetArray(const QString& name) const override
    {
        const auto found = lists.find(name);
        return found == lists.end() ? std::vector<double>() : found->second;
    }

    std::map<QString, QString> texts;
    std::map<QString, std::vector<double>> lists;
};

DeviceDataCollection::Record pressure()
{
    RTE::DeviceDataStatic properties;
    properties.name = QStringLiteral("ADC 1");
    properties.alias = QStringLiteral("Pressure");
    properties.deviceClass = RTE::DeviceClass::MeasuredAdc;
    properties.scale = {0.1, -3.0, QStringLiteral("hPa"), QStringLiteral("Pressure")};
    properties.traceScale.setUnit(QStringLiteral("ms"));
    DeviceDataCollection::Record record(DeviceDataT<double>(properties, {0.1, NAN, 0.3}),
                                        RTE::RangeT<double>(-10.0, 10.0));
    record.setReference(0.2);
    return record;
}

TEST(DeviceData, StatisticsAreThoseOfASample)
{
    struct Case
    {
        std::vector<double> trace;
        double average;
        double minimum;
        double maximum;
        double standardDeviation;
    };
    const Case cases[] = {
        {{2.0, 4.0, 4.0, 4.0, 5.0, 5.0, 7.0, 9.0}, 5.0, 2.0, 9.0, std::sqrt(32.0 / 7.0)},
        {{NAN, -1.5}, -1.5, -1.5, -1.5, 0.0},
        {{1e9 + 1.0, 1e9 - 1.0}, 1e9, 1e9 - 1.0, 1e9 + 1.0, std::sqrt(2.0)},
    };
    for (const Case& c : cases) {
        const DeviceDataT<double> record({}, c.trace);
        EXPECT_DOUBLE_EQ(record.getAverage(), c.average);
        EXPECT_EQ(record.getMinimum(), c.minimum);
        EXPECT_EQ(record.getMaximum(), c.maximum);
        EXPECT_DOUBLE_EQ(record.getStandardDeviation(), c.standardDeviation);
    }
    EXPECT_TRUE(std::isnan(DeviceDataT<double>({}, {NAN}).getAverage()));
}

TEST(DeviceDataCollection, RecordsComeBackFromTheirAttributes)
{
    RTE::DeviceDataStatic state;
    state.name = QStringLiteral("Valve");
    state.kind = RTE::DeviceDataKind::SingleValue;
    state.deviceClass = RTE::DeviceClass::Other;
    DeviceDataCollection::Record valve{DeviceDataT<double>(state)};
    valve.setNamedValue(QStringLiteral("open"));

    DeviceDataCollection written;
    written.add(pressure());
    written.add(valve);
    Attributes attributes;
    written.Write(attributes);
    EXPECT_EQ(attributes.texts.at(DeviceData::DEVDATASOURCE), QStringLiteral("2"));
    EXPECT_EQ(attributes.texts.at(DeviceData::DEVDATANAME + QStringLiteral("1")), QStringLiteral("Valve"));
    EXPECT_EQ(attributes.texts.at(DeviceData::DEVDATAAVERAGE + QStringLiteral("0")), QStringLiteral("0.2"));
    EXPECT_FALSE(attributes.texts.contains(DeviceData::DEVDATAAVERAGE + QStringLiteral("1")));
    for (const auto& [name, text] : attributes.texts) {
        EXPECT_TRUE(name.startsWith(QStringLiteral("DevData.")));
    }

    const DeviceDataCollection read = DeviceDataCollection::Read(attributes);
    ASSERT_EQ(read.size(), 2U);
    EXPECT_EQ(read.at(0).getStatic(), pressure().getStatic());
    EXPECT_TRUE(read.at(0).isMeasured());
    EXPECT_TRUE(read.at(0).isAdc());
    EXPECT_EQ(read.at(0).getUnit(), QStringLiteral("hPa"));
    EXPECT_EQ(read.at(0).getTrace().size(), 3U);
    EXPECT_EQ(read.at(0).getStandardDeviation(), pressure().getStandardDeviation());
    EXPECT_EQ(read.at(0).getReference(), 0.2);
    EXPECT_EQ(read.at(0).getRange(), RTE::RangeT<double>(-10.0, 10.0));
    EXPECT_EQ(read.at(1).getStatic(), state);
    EXPECT_EQ(read.at(1).getNamedValue(), QStringLiteral("open"));
    EXPECT_TRUE(std::isnan(read.at(1).getAverage()));
    EXPECT_FALSE(read.at(1).hasReference() || read.at(1).hasRange() || read.at(1).isMeasured());
    EXPECT_TRUE(TestSupport::raises<RTE::OutOfRangeError>("index", [&] { static_cast<void>(read.at(2)); }));
}

TEST(DeviceDataCollection, ReadsWhatIsThere)
{
    Attributes attributes;
    EXPECT_TRUE(DeviceDataCollection::Read(attributes).empty());
    for (const char* count : {"many", "-1", "4294967295"}) {
        attributes.texts[DeviceData::DEVDATASOURCE] = QString::fromLatin1(count);
        EXPECT_TRUE(DeviceDataCollection::Read(attributes).empty()) << count;
    }
    attributes.texts[DeviceData::DEVDATANAME + QStringLiteral("0")] = QStringLiteral("probe");
    attributes.texts[DeviceData::DEVDATACLASS + QStringLiteral("0")] = QStringLiteral("99");
    attributes.texts[DeviceData::DEVDATAREFERENCE + QStringLiteral("0")] = QStringLiteral("unknown");
    attributes.lists[DeviceData::DEVDATATRACE + QStringLiteral("0")] = {1.0, 3.0};
    const DeviceDataCollection read = DeviceDataCollection::Read(attributes);
    ASSERT_EQ(read.size(), 1U);
    EXPECT_EQ(read.at(0).getClass(), RTE::DeviceClass::Other);
    EXPECT_EQ(read.at(0).getReference(), 0.0);
    EXPECT_EQ(read.at(0).getAverage(), 2.0);
}

} // namespace
