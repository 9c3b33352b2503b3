// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/DeviceDataFromAttributes.h"

#include "Core/Common/DeviceDataCollection.h"
#include "Core/DataObjects/AttributesSource.h"

namespace DataObjects
{

std::vector<RTE::DeviceDataT<double>> GetAllDevData(const Attributes& attributes)
{
    const auto records = RTE::DeviceDataCollection::Read(Private::AttributesSource(attributes));
    return {records.begin(), records.end()};
}

} // namespace DataObjects
