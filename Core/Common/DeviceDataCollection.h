// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/AttributesSink.h"
#include "Core/Common/DeviceData.h"

#include <vector>

namespace RTE
{

/// A list of device records, and its form as attributes, whose names DeviceData lists.
class DATAOBJECTS_COMMON_EXPORT DeviceDataCollection
{
public:
    using Record = DeviceDataWithRangeT<double>;

    DeviceDataCollection() = default;

    [[nodiscard]] unsigned int size() const noexcept { return static_cast<unsigned int>(m_records.size()); }
    [[nodiscard]] bool empty() const noexcept { return m_records.empty(); }
    /// \throws RTE::OutOfRangeError "index" at or beyond the size
    [[nodiscard]] const Record& at(unsigned int index) const;
    [[nodiscard]] std::vector<Record>::const_iterator begin() const noexcept { return m_records.begin(); }
    [[nodiscard]] std::vector<Record>::const_iterator end() const noexcept { return m_records.end(); }
    /// Appends a record.
    void add(Record record);

    /// Feeds the records to the sink. What a record does not have is left out, and so is a scale that changes
    /// nothing.
    void Write(I_AttributesSink& sink) const;

    /// The number of records that the source names; 0 if it names none or the text is no number.
    [[nodiscard]] static unsigned int ReadCount(const I_AttributesSource& source);
    /// The record of this index; what the source does not have stays at its default. A text that is no number
    /// reads as 0. Where not even a name is stored, only a stored class makes the record count as measured.
    [[nodiscard]] static Record ReadAt(const I_AttributesSource& source, unsigned int index);
    /// The records from index 0 on, up to the count that the source names; above a count of 1000 no further
    /// than the first record without a name.
    [[nodiscard]] static DeviceDataCollection Read(const I_AttributesSource& source);

private:
    std::vector<Record> m_records;
};

} // namespace RTE
