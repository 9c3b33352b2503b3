// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/DeviceDataFromAttributes.h"

#include "Core/Common/DeviceDataCollection.h"
#include "Core/DataObjects/AttributesSource.h"
#include "Core/DataObjects/BufferAttributes.h"
#include "Core/DataObjects/DeviceData.h"
#include "Core/DataObjects/Latin1.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace DataObjects
{

namespace
{

using Record = RTE::DeviceDataT<double>;
using RecordWithRange = RTE::DeviceDataWithRangeT<double>;

const std::string disableMark = "DisableRawViewAndBgImage";

bool isAny(const RTE::DeviceData& /*device*/)
{
    return true;
}

bool isAdc(const RTE::DeviceData& device)
{
    return device.isAdc();
}

bool isMeasuredAdc(const RTE::DeviceData& device)
{
    return device.isAdc() && device.isMeasured();
}

template <typename Kept, typename Predicate>
std::vector<Kept> readIf(const Attributes& attributes, Predicate isWanted)
{
    std::vector<Kept> kept;
    for (const auto& record : RTE::DeviceDataCollection::Read(Private::AttributesSource(attributes))) {
        if (isWanted(record)) {
            kept.push_back(record);
        }
    }
    return kept;
}

template <typename Predicate>
Record firstOf(const Attributes& attributes, Predicate isWanted)
{
    const auto found = readIf<Record>(attributes, isWanted);
    const DeviceData all(attributes);
    return found.empty() ? all.at(all.size()) : found.front();
}

std::optional<Record> findScanPosition(const Attributes& attributes)
{
    const auto found = readIf<Record>(attributes, [](const RecordWithRange& device) {
        return device.getName().endsWith(QStringLiteral("z-position")) && !device.getTrace().empty() &&
               !std::isnan(device.getAverage());
    });
    return found.empty() ? std::nullopt : std::optional(found.front());
}

/// The name of an attribute of a device without its index, and the index.
struct IndexedName
{
    std::string item;
    int index = -1; ///< -1 for a name that has none
};

IndexedName splitIndex(const std::string& name)
{
    const std::string digits = name.substr(name.find_last_not_of("0123456789") + 1);
    const int index = QByteArray::fromStdString(digits).toInt();
    const bool isIndexed = name.starts_with("DevData.") && digits == std::to_string(index);
    return isIndexed ? IndexedName{name.substr(0, name.size() - digits.size()), index} : IndexedName{name};
}

} // namespace

int GetNumberOfDevData(const Attributes& attributes)
{
    const unsigned int count = RTE::DeviceDataCollection::ReadCount(Private::AttributesSource(attributes));
    constexpr int most = std::numeric_limits<int>::max();
    return count > static_cast<unsigned int>(most) ? most : static_cast<int>(count);
}

int GetNumberOfMeasuredDevData(const Attributes& attributes)
{
    return static_cast<int>(DeviceData(attributes).withMeasuredValues().size());
}

std::vector<Record> GetAllDevData(const Attributes& attributes)
{
    return readIf<Record>(attributes, isAny);
}

std::vector<Record> GetAdcDevDataList(const Attributes& attributes)
{
    return readIf<Record>(attributes, isAdc);
}

std::vector<Record> GetMeasuredAdcDevDataList(const Attributes& attributes)
{
    return readIf<Record>(attributes, isMeasuredAdc);
}

std::vector<RecordWithRange> GetAllDevDataWithRange(const Attributes& attributes)
{
    return readIf<RecordWithRange>(attributes, isAny);
}

std::vector<RecordWithRange> GetAdcDevDataWithRangeList(const Attributes& attributes)
{
    return readIf<RecordWithRange>(attributes, isAdc);
}

std::vector<RecordWithRange> GetMeasuredAdcDevDataWithRangeList(const Attributes& attributes)
{
    return readIf<RecordWithRange>(attributes, isMeasuredAdc);
}

Record GetDeviceDataByName(const Attributes& attributes, const QString& name)
{
    return firstOf(attributes, [&](const Record& device) { return device.getName() == name; });
}

Record GetDeviceDataByAlias(const Attributes& attributes, const QString& alias)
{
    return firstOf(attributes, [&](const Record& device) { return device.getAlias() == alias; });
}

Record GetMeasuredDeviceDataByName(const Attributes& attributes, const QString& name)
{
    return firstOf(attributes,
                   [&](const Record& device) { return device.isMeasured() && device.getName() == name; });
}

QString GetDevDataAlias(int index, const Attributes& attributes)
{
    return Private::AttributesSource(attributes)
        .GetText(RTE::DeviceData::DEVDATAALIAS + QString::number(index))
        .value_or(QString());
}

std::vector<double> GetTraceOfDevData(const Attributes& attributes, const QString& name)
{
    std::vector<double> joined;
    for (const Record& device : DeviceData(attributes).withNamesContaining(name)) {
        joined.insert(joined.end(), device.getTrace().begin(), device.getTrace().end());
    }
    return joined;
}

std::vector<double> GetRoboCoordinatesFrom(const Attributes& attributes)
{
    std::vector<double> coordinates;
    for (const Record& device :
         DeviceData(attributes).withNamesContaining(QStringLiteral("RdkTargetScan_"))) {
        if (!device.getName().contains(QStringLiteral("RobotControl.RoboDK"))) {
            continue;
        }
        const std::vector<double> average{device.getAverage()};
        for (const double value : device.getTrace().empty() ? average : device.getTrace()) {
            coordinates.push_back(device.getScale().getScaled(value));
        }
    }
    return coordinates;
}

QString GetRoboCoordinatesAsString(const Attributes& attributes)
{
    const std::vector<double> values = GetRoboCoordinatesFrom(attributes);
    if (values.size() != 6) {
        return {};
    }
    return QStringLiteral("P[%4]=%1_%2_%3")
               .arg(values[0])
               .arg(values[1])
               .arg(values[2])
               .arg(QLatin1String("mm")) +
           QStringLiteral("_A[%4]=%1_%2_%3")
               .arg(values[3])
               .arg(values[4])
               .arg(values[5])
               .arg(QLatin1String("deg"));
}

std::optional<double> GetScanPositionZ(const Attributes& attributes)
{
    const auto device = findScanPosition(attributes);
    return device ? std::optional(device->getAverage()) : std::nullopt;
}

Zt::LinearScale GetScanPositionZScaleI(const Attributes& attributes)
{
    const auto device = findScanPosition(attributes);
    return device ? device->getScale() : Zt::LinearScale(Zt::ScalePreset::I);
}

AttributesContainer RemoveDeviceDataEntry(const Attributes& attributes, const QString& name)
{
    std::vector<int> removed;
    int index = 0;
    for (const Record& device : GetAllDevData(attributes)) {
        if (device.getName() == name) {
            removed.push_back(index);
        }
        ++index;
    }
    AttributesContainer result;
    for (const auto& [stored, value] : AttributesContainer(attributes)) {
        const auto [item, deviceIndex] = splitIndex(stored);
        const auto next = std::lower_bound(removed.begin(), removed.end(), deviceIndex);
        const auto removedBefore = next - removed.begin();
        if (next == removed.end() || *next != deviceIndex) {
            result.set(removedBefore == 0 ? stored : item + std::to_string(deviceIndex - removedBefore),
                       *value);
        }
    }
    if (!removed.empty()) {
        result.set(Private::toLatin1(RTE::DeviceData::DEVDATASOURCE),
                   QString::number(GetNumberOfDevData(attributes) - static_cast<int>(removed.size())));
    }
    return result;
}

void AddDisableRawViewAndBgImageAttribute(BufferApi::I_Buffer& buffer)
{
    BufferAttributes(buffer).set(disableMark, 1);
}

bool IsRawViewAndBgImageDisabled(const Attributes& attributes)
{
    return attributes.contains(disableMark);
}

} // namespace DataObjects
