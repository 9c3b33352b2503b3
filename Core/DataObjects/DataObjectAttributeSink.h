// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/AttributesSink.h"
#include "Core/DataObjects/Attributes.h"

namespace DataObjects
{

/// Lets code that knows only the sink write into attributes, which must outlive it. Names become Latin-1.
class DATAOBJECTS_DATAOBJECTS_EXPORT DataObjectAttributeSink final : public RTE::I_AttributesSink
{
public:
    explicit DataObjectAttributeSink(Attributes& attributes);
    ~DataObjectAttributeSink() override;

    void Add(const QString& name, const QString& value) override;
    /// Sets a list of `count` elements that are copied.
    void AddArray(const QString& name, unsigned long long count, const double* data) override;
    void AddArray(const QString& name, unsigned long long count, const float* data) override;
    void AddArray(const QString& name, unsigned long long count, const int* data) override;
    void AddArray(const QString& name, unsigned long long count, const unsigned short* data) override;

    /// Feeds all attributes of the target to another sink, lists as arrays and the rest as text; empty lists
    /// are left out.
    /// \throws RTE::PreconditionFailed "Precondition failed: attributesSink != nullptr"
    void copyTo(RTE::I_AttributesSink* attributesSink) const;

private:
    template <typename T>
    void addList(const QString& name, unsigned long long count, const T* data);

    Attributes& m_attributes;
};

} // namespace DataObjects
