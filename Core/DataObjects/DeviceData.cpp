// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/DeviceData.h"

#include "Core/Common/DeviceDataCollection.h"
#include "Core/Common/Raise.h"
#include "Core/DataObjects/AttributesSource.h"
#include "Core/DataObjects/DeviceDataFromAttributes.h"

#include <algorithm>
#include <iterator>

namespace DataObjects
{

DeviceData::DeviceData(const Attributes& attributes)
    : m_attributes(attributes), m_count(GetNumberOfDevData(attributes))
{
}

RTE::DeviceDataT<double> DeviceData::at(int index) const
{
    checkIndex(index);
    return RTE::DeviceDataCollection::ReadAt(Private::AttributesSource(m_attributes),
                                             static_cast<unsigned int>(index));
}

QString DeviceData::nameAt(int index) const
{
    checkIndex(index);
    return Private::AttributesSource(m_attributes)
        .GetText(RTE::DeviceData::DEVDATANAME + QString::number(index))
        .value_or(QString());
}

bool DeviceData::isDevDataMeasuredData(int index) const
{
    return RTE::DeviceDataCollection::ReadAt(Private::AttributesSource(m_attributes),
                                             static_cast<unsigned int>(index))
        .isMeasured();
}

std::vector<RTE::DeviceDataT<double>> DeviceData::withMeasuredValues() const
{
    auto devices = GetAllDevData(m_attributes);
    std::erase_if(devices, [](const auto& device) { return !device.isMeasured(); });
    return devices;
}

std::vector<RTE::DeviceDataT<double>> DeviceData::withNamesContaining(const QString& part) const
{
    auto devices = GetAllDevData(m_attributes);
    std::erase_if(devices, [&](const auto& device) { return !device.getName().contains(part); });
    return devices;
}

void DeviceData::checkIndex(int index, RTE::SourceLocation location) const
{
    if (index < 0 || index >= m_count) {
        RTE::raise(RTE::PreconditionFailed(QStringLiteral("Precondition failed: index < m_count")), location);
    }
}

} // namespace DataObjects
