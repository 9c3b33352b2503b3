// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/DeviceData.h"
#include "Core/DataObjects/Attributes.h"

namespace DataObjects
{

/// The records of measuring devices that stand in attributes, read one by one; the attributes must outlive
/// this object and keep the number of their records. RTE::DeviceData lists the names of the attributes.
class DATAOBJECTS_DATAOBJECTS_EXPORT DeviceData
{
public:
    explicit DeviceData(const Attributes& attributes);
    explicit DeviceData(const Attributes&& attributes) = delete;

    /// The number of records that the attributes name.
    [[nodiscard]] int size() const noexcept { return m_count; }
    /// \throws RTE::PreconditionFailed "Precondition failed: index < m_count"
    [[nodiscard]] RTE::DeviceDataT<double> at(int index) const;
    /// \throws RTE::PreconditionFailed "Precondition failed: index < m_count"
    [[nodiscard]] QString nameAt(int index) const;
    /// Whether the values were measured, rather than set or computed; false where there is no record.
    [[nodiscard]] bool isDevDataMeasuredData(int index) const;

    [[nodiscard]] std::vector<RTE::DeviceDataT<double>> withMeasuredValues() const;
    /// \param part case-sensitive
    [[nodiscard]] std::vector<RTE::DeviceDataT<double>> withNamesContaining(const QString& part) const;

private:
    void checkIndex(int index, RTE::SourceLocation location = RTE::SourceLocation::current()) const;

    const Attributes& m_attributes;
    int m_count;
};

} // namespace DataObjects
