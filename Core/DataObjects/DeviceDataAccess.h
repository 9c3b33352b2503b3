// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/DeviceData.h"
#include "Core/DataObjects/Export.h"

#include <QList>
#include <QString>

namespace DataObjects
{

/// The record of a measuring device as text for display: physical values with six significant digits. The
/// standard deviation takes the absolute factor of the scale and no offset.
class DATAOBJECTS_DATAOBJECTS_EXPORT DeviceDataAccess
{
public:
    DeviceDataAccess() = default;
    explicit DeviceDataAccess(RTE::DeviceDataT<double> record);

    /// \param key "Minimum", "Maximum", "Average", "StandardDeviation", "Reference", "NamedValue" or "Value",
    ///     which is the first of the trace and without one the average. Any other gives the empty text, and
    ///     so does a reference or named value that the record has not.
    [[nodiscard]] QString getValue(const QString& key) const;
    /// The value, a blank, and the unit.
    [[nodiscard]] QString getValueWithUnit(const QString& key) const;
    /// What describes the record best: the named value; the average of a record of a single value, with
    /// " ..." behind it if it has a trace all the same; the value of a trace of one; the statistics; the
    /// reference; "---".
    [[nodiscard]] QString getValueAsString() const;
    /// Those of the statistics that are known, such as "avg: 1.5".
    [[nodiscard]] QList<QString> getValuesAsList() const;
    /// True for samples over an axis: more than one, in a record that is no single or named value.
    [[nodiscard]] bool isTrace() const noexcept;

private:
    RTE::DeviceDataT<double> m_record;
};

} // namespace DataObjects
