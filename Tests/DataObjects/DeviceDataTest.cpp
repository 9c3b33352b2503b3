// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/DeviceData.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/Common/DeviceDataCollection.h"
#include "Core/DataObjects/BufferAttributes.h"
#include "Core/DataObjects/DataObjectAttributeSink.h"
#include "Core/DataObjects/DeviceDataAccess.h"
#include "Core/DataObjects/DeviceDataFromAttributes.h"
#include "Tests/Support/ImageFrames.h"
#include "Tests/Support/Raises.h"

#include <cmath>

namespace
{

using namespace DataObjects;
using namespace TestSupport;
using RTE::DeviceClass;
using RTE::DeviceDataKind;

using Record = RTE::DeviceDataT<double>;

RTE::DeviceDataStatic properties(const char* name, DeviceClass deviceClass = DeviceClass::Measured)
{
    RTE::DeviceDataStatic result;
    result.name = QLatin1String(name);
    result.alias = result.name.toLower();
    result.deviceClass = deviceClass;
    return result;
}

Record record(const char* name, DeviceClass deviceClass, std::vector<double> trace)
{
    return Record(properties(name, deviceClass), std::move(trace));
}

AttributesContainer attributesOf(const std::vector<Record>& records)
{
    RTE::DeviceDataCollection devices;
    for (const Record& device : records) {
        devices.add(device);
    }
    AttributesContainer attributes;
    DataObjectAttributeSink sink(attributes);
    devices.Write(sink);
    return attributes;
}

template <typename R>
QString names(const std::vector<R>& records)
{
    QString all;
    for (const auto& device : records) {
        all += device.getName();
    }
    return all;
}

/// One device of each class.
AttributesContainer sample()
{
    return attributesOf({record("A", DeviceClass::Measured, {1.0, 2.0}), record("B", DeviceClass::Adc, {3.0}),
                         record("C", DeviceClass::MeasuredAdc, {4.0}),
                         record("D", DeviceClass::Other, {5.0})});
}

TEST(DeviceData, ListsRecordsByClass)
{
    const AttributesContainer attributes = sample();
    EXPECT_EQ(GetNumberOfDevData(attributes), 4);
    EXPECT_EQ(GetNumberOfMeasuredDevData(attributes), 2);
    EXPECT_EQ(names(GetAllDevData(attributes)), "ABCD");
    EXPECT_EQ(names(GetAdcDevDataList(attributes)), "BC");
    EXPECT_EQ(names(GetMeasuredAdcDevDataList(attributes)), "C");
    EXPECT_EQ(names(GetAllDevDataWithRange(attributes)), "ABCD");
    EXPECT_EQ(names(GetAdcDevDataWithRangeList(attributes)), "BC");
    EXPECT_EQ(names(GetMeasuredAdcDevDataWithRangeList(attributes)), "C");
    const DeviceData devices(attributes);
    EXPECT_EQ(devices.size(), 4);
    EXPECT_EQ(names(devices.withMeasuredValues()), "AC");
    EXPECT_EQ(names(devices.withNamesContaining("C")), "C");
    std::vector<bool> measured;
    for (int i = -1; i < 5; ++i) {
        measured.push_back(devices.isDevDataMeasuredData(i));
    }
    EXPECT_EQ(measured, (std::vector<bool>{false, true, false, true, false, false}));
    EXPECT_EQ(GetDevDataAlias(2, attributes), "c");
    EXPECT_EQ(GetDevDataAlias(4, attributes), QString());
}

TEST(DeviceData, FindsRecordsOrRaises)
{
    AttributesContainer attributes = sample();
    EXPECT_EQ(GetDeviceDataByName(attributes, "B").getAverage(), 3.0);
    EXPECT_EQ(GetDeviceDataByAlias(attributes, "d").getAverage(), 5.0);
    EXPECT_EQ(GetMeasuredDeviceDataByName(attributes, "A").getTrace().size(), 2U);
    EXPECT_EQ(DeviceData(attributes).nameAt(3), "D");
    const std::vector<std::function<void()>> calls{
        [&] { return GetDeviceDataByName(attributes, "b"); },
        [&] { return GetDeviceDataByAlias(attributes, "B"); },
        [&] { return GetMeasuredDeviceDataByName(attributes, "B"); },
        [&] { return DeviceData(attributes).at(4); },
        [&] { return DeviceData(attributes).at(-1); },
        [&] { return DeviceData(attributes).nameAt(4); }};
    for (const auto& call : calls) {
        EXPECT_TRUE(raises<RTE::PreconditionFailed>("Precondition failed: index < m_count", call));
    }
}

TEST(DeviceData, ComesThroughFrames)
{
    const AttributesContainer attributes = sample();
    const auto frame = newFrame(BufferApi::DT_BYTE, 1, 1);
    BufferAttributes stored(*frame);
    stored.merge(attributes);
    EXPECT_EQ(GetAllDevData(stored), GetAllDevData(attributes));
    EXPECT_EQ(GetTraceOfDevData(stored, "A"), (std::vector<double>{1.0, 2.0}));
    EXPECT_EQ(GetTraceOfDevData(stored, QString()), (std::vector<double>{1.0, 2.0, 3.0, 4.0, 5.0}));
    EXPECT_TRUE(GetTraceOfDevData(stored, "E").empty());
    stored.remove("DevData.Trace0");
    stored.set("DevData.Trace0", std::vector<unsigned short>{7});
    EXPECT_EQ(GetTraceOfDevData(stored, "A"), std::vector<double>{7.0});
}

TEST(DeviceData, CountsWithoutRecordsKeepNobodyBusy)
{
    AttributesContainer attributes = sample();
    attributes.set("DevData.Sources", QStringLiteral("4000000000"));
    EXPECT_EQ(GetNumberOfDevData(attributes), 2147483647);
    EXPECT_EQ(GetNumberOfMeasuredDevData(attributes), 2);
    EXPECT_EQ(names(GetAllDevData(attributes)), "ABCD");
    attributes.set("DevData.Sources", QStringLiteral("none"));
    EXPECT_EQ(DeviceData(attributes).size(), 0);
    attributes.set("DevData.Sources", std::vector<int>{4});
    EXPECT_TRUE(GetAllDevData(attributes).empty());
    attributes.set("DevData.Sources", 3.0);
    EXPECT_EQ(names(GetAllDevData(attributes)), "ABC");
    attributes.set("DevData.Sources", 1001);
    EXPECT_EQ(GetAllDevData(attributes).size(), 4U);
}

TEST(DeviceData, RecordsWithoutANameKeepTheirPlace)
{
    AttributesContainer attributes = sample();
    attributes.remove("DevData.Name0");
    attributes.remove("DevData.Name2");
    attributes.remove("DevData.Class2");
    attributes.set("DevData.Sources", QStringLiteral("6"));
    attributes.set("DevData.Class5", 1);
    EXPECT_EQ(names(GetAllDevData(attributes)), "BD");
    EXPECT_EQ(GetAllDevData(attributes).size(), 6U);
    const DeviceData devices(attributes);
    std::vector<bool> measured;
    for (int i = 0; i < devices.size(); ++i) {
        EXPECT_EQ(GetAllDevData(attributes)[static_cast<std::size_t>(i)].getAlias(),
                  devices.at(i).getAlias());
        measured.push_back(devices.isDevDataMeasuredData(i));
    }
    EXPECT_EQ(measured, (std::vector<bool>{true, false, false, false, false, true}));
    EXPECT_EQ(GetNumberOfMeasuredDevData(attributes), 2);
    EXPECT_EQ(names(GetAllDevData(RemoveDeviceDataEntry(attributes, "B"))), "D");
}

TEST(DeviceData, RemovesADeviceAndMovesTheOthersUp)
{
    std::vector<Record> records;
    for (int i = 0; i < 12; ++i) {
        RTE::DeviceDataStatic fixed = properties(i == 10 ? "1" : QByteArray::number(i).constData());
        fixed.scale.setFactor(i + 1);
        records.emplace_back(fixed, std::vector<double>{double(i)});
    }
    AttributesContainer attributes = attributesOf(records);
    attributes.set("Other7", 7);
    attributes.set("DevData.Mark", 8);
    attributes.set("DevData.Name007", 9);
    const AttributesContainer left = RemoveDeviceDataEntry(attributes, QStringLiteral("1"));
    records.erase(records.begin() + 10);
    records.erase(records.begin() + 1);
    EXPECT_EQ(GetAllDevData(left), records);
    AttributesContainer expected = attributesOf(records);
    expected.set("Other7", 7);
    expected.set("DevData.Mark", 8);
    expected.set("DevData.Name007", 9);
    EXPECT_EQ(left.toStdVector(), expected.toStdVector());
    EXPECT_EQ(RemoveDeviceDataEntry(attributes, "x").toStdVector(), attributes.toStdVector());
}

TEST(DeviceData, GivesTheScanPosition)
{
    RTE::DeviceDataStatic scan = properties("Scan z-position");
    scan.scale = {2.0, 1.0, "mm", "z"};
    AttributesContainer attributes = attributesOf(
        {record("z-position 2", DeviceClass::Other, {1.0}), record("Z-Position", DeviceClass::Other, {2.0}),
         record("no z-position", DeviceClass::Other, {}), Record(scan, {3.0, 5.0}),
         record("z-position", DeviceClass::Other, {6.0})});
    EXPECT_EQ(GetScanPositionZ(attributes), 4.0);
    EXPECT_EQ(GetScanPositionZScaleI(attributes), scan.scale);
    attributes.clear();
    EXPECT_EQ(GetScanPositionZ(attributes), std::nullopt);
    EXPECT_EQ(GetScanPositionZScaleI(attributes), Zt::LinearScale(Zt::ScalePreset::I));
}

TEST(DeviceData, GivesThePoseOfARobot)
{
    std::vector<Record> axes;
    for (const char* axis : {"x", "y", "z", "rx", "ry", "rz"}) {
        const QByteArray name = QByteArray("RobotControl.RoboDK RdkTargetScan_") + axis;
        axes.push_back(record(name.constData(), DeviceClass::Measured, {1.5 * double(axes.size())}));
    }
    Record& withoutTrace = axes[5];
    withoutTrace = Record(properties("RdkTargetScan_rz RobotControl.RoboDK"));
    withoutTrace.setStatistics({-0.25, NAN, NAN, NAN});
    axes.push_back(record("RdkTargetScan_x", DeviceClass::Measured, {9.0}));
    axes.push_back(record("RobotControl.RoboDK", DeviceClass::Measured, {9.0}));
    EXPECT_EQ(GetRoboCoordinatesFrom(attributesOf(axes)), (std::vector<double>{0, 1.5, 3, 4.5, 6, -0.25}));
    EXPECT_EQ(GetRoboCoordinatesAsString(attributesOf(axes)), "P[mm]=0_1.5_3_A[deg]=4.5_6_-0.25");
    axes.erase(axes.begin());
    EXPECT_EQ(GetRoboCoordinatesAsString(attributesOf(axes)), QString());
}

TEST(DeviceData, MarksBuffers)
{
    const auto buffer = bufferOf();
    EXPECT_FALSE(IsRawViewAndBgImageDisabled(BufferAttributes(*buffer)));
    AddDisableRawViewAndBgImageAttribute(*buffer);
    EXPECT_TRUE(IsRawViewAndBgImageDisabled(BufferAttributes(*buffer)));
}

TEST(DeviceDataAccess, DescribesARecord)
{
    const auto describes = [](const Record& described, const char* text, const char* list, bool isTrace) {
        SCOPED_TRACE(text);
        const DeviceDataAccess access(described);
        EXPECT_EQ(access.getValueAsString(), QLatin1String(text));
        EXPECT_EQ(access.getValuesAsList().join(QLatin1Char(';')), QLatin1String(list));
        EXPECT_EQ(access.isTrace(), isTrace);
    };
    const auto single = [](std::vector<double> trace) {
        RTE::DeviceDataStatic fixed = properties("single");
        fixed.kind = DeviceDataKind::SingleValue;
        return Record(fixed, std::move(trace));
    };
    describes(record("t", DeviceClass::Other, {1.0, 3.0}), "avg: 2 | min: 1 | max: 3 | stdDev: 1.41421",
              "avg: 2;min: 1;max: 3;stdDev: 1.41421", true);
    describes(record("v", DeviceClass::Other, {1234567.0}), "1.23457e+06",
              "avg: 1.23457e+06;min: 1.23457e+06;max: 1.23457e+06;stdDev: 0", false);
    describes(single({4.0}), "4", "avg: 4;min: 4;max: 4;stdDev: 0", false);
    describes(single({4.0, 5.0}), "4.5 ...", "avg: 4.5;min: 4;max: 5;stdDev: 0.707107", false);
    describes(single({}), "---", "", false);
    describes(Record(), "---", "", false);
    Record named = record("named", DeviceClass::Other, {1.0, 2.0});
    named.setNamedValue("open");
    describes(named, "open", "avg: 1.5;min: 1;max: 2;stdDev: 0.707107", false);
    Record unknownAverage = record("a", DeviceClass::Other, {1.0, 2.0});
    unknownAverage.setStatistics({NAN, 1.0, 2.0, 0.5});
    describes(unknownAverage, "---", "min: 1;max: 2;stdDev: 0.5", true);
    Record referenceAlone = record("r", DeviceClass::Other, {});
    referenceAlone.setReference(2.5);
    describes(referenceAlone, "2.5", "", false);
}

TEST(DeviceDataAccess, GivesPhysicalValues)
{
    RTE::DeviceDataStatic fixed = properties("p");
    fixed.scale = {-2.0, 1.0, QStringLiteral("hPa"), QString()};
    Record pressure(fixed, {1.0, 3.0});
    pressure.setReference(10.0);
    pressure.setNamedValue("low");
    const DeviceDataAccess access(pressure);
    const std::vector<std::pair<const char*, const char*>> values{
        {"Average", "-3"},    {"Minimum", "-5"}, {"Maximum", "-1"},     {"StandardDeviation", "2.82843"},
        {"Reference", "-19"}, {"Value", "-1"},   {"NamedValue", "low"}, {"average", ""}};
    for (const auto& [key, text] : values) {
        EXPECT_EQ(access.getValue(QLatin1String(key)), QLatin1String(text)) << key;
        EXPECT_EQ(access.getValueWithUnit(QLatin1String(key)), QLatin1String(text) + QStringLiteral(" hPa"));
    }
    EXPECT_EQ(DeviceDataAccess().getValue(QStringLiteral("Reference")), QString());
    EXPECT_EQ(DeviceDataAccess().getValue("Value"), "nan");
}

} // namespace
