// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/DeviceData.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace RTE
{

const QString DeviceData::DEVDATASOURCE = QStringLiteral("DevData.Sources");
const QString DeviceData::DEVDATANAME = QStringLiteral("DevData.Name");
const QString DeviceData::DEVDATAALIAS = QStringLiteral("DevData.Alias");
const QString DeviceData::DEVDATACLASS = QStringLiteral("DevData.Class");
const QString DeviceData::DEVDATAKIND = QStringLiteral("DevData.Kind");
const QString DeviceData::DEVDATANAMEDVALUE = QStringLiteral("DevData.NamedValue");
const QString DeviceData::DEVDATAREFERENCE = QStringLiteral("DevData.Reference");
const QString DeviceData::DEVDATAAVERAGE = QStringLiteral("DevData.Average");
const QString DeviceData::DEVDATAMINIMUM = QStringLiteral("DevData.Minimum");
const QString DeviceData::DEVDATAMAXIMUM = QStringLiteral("DevData.Maximum");
const QString DeviceData::DEVDATASTANDARDDEVIATION = QStringLiteral("DevData.StandardDeviation");
const QString DeviceData::DEVDATARANGEMINIMUM = QStringLiteral("DevData.RangeMinimum");
const QString DeviceData::DEVDATARANGEMAXIMUM = QStringLiteral("DevData.RangeMaximum");
const QString DeviceData::DEVDATATRACE = QStringLiteral("DevData.Trace");
const QString DeviceData::DEVDATASCALE = QStringLiteral("DevData.Scale");
const QString DeviceData::DEVDATATRACESCALE = QStringLiteral("DevData.TraceScale");

template <typename T>
DeviceDataT<T>::DeviceDataT(DeviceDataStatic properties, std::vector<T> trace)
    : DeviceData(std::move(properties)), m_trace(std::move(trace))
{
    computeStatistics();
}

template <typename T>
void DeviceDataT<T>::computeStatistics()
{
    m_statistics = {};
    std::vector<double> values;
    std::copy_if(m_trace.begin(), m_trace.end(), std::back_inserter(values),
                 [](T value) { return !std::isnan(value); });
    if (values.empty()) {
        return;
    }
    const auto [minimum, maximum] = std::minmax_element(values.begin(), values.end());
    double sum = 0.0;
    for (const double value : values) {
        sum += value;
    }
    const double average = sum / static_cast<double>(values.size());
    double squares = 0.0;
    for (const double value : values) {
        squares += (value - average) * (value - average);
    }
    const double freedom = static_cast<double>(std::max<std::size_t>(values.size() - 1, 1));
    m_statistics = {average, *minimum, *maximum, std::sqrt(squares / freedom)};
}

template class DeviceDataT<double>;
template class DeviceDataWithRangeT<double>;

} // namespace RTE
