// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Export.h"

#include <QString>

#include <optional>
#include <vector>

namespace RTE
{

/// Receives attributes: texts, and lists that it copies before it returns. Numbers come as text.
class DATAOBJECTS_COMMON_EXPORT I_AttributesSink
{
public:
    virtual ~I_AttributesSink();

    virtual void Add(const QString& name, const QString& value) = 0;
    virtual void AddArray(const QString& name, unsigned long long count, const double* data) = 0;
    virtual void AddArray(const QString& name, unsigned long long count, const float* data) = 0;
    virtual void AddArray(const QString& name, unsigned long long count, const int* data) = 0;
    virtual void AddArray(const QString& name, unsigned long long count, const unsigned short* data) = 0;

protected:
    I_AttributesSink() = default;
    I_AttributesSink(const I_AttributesSink&) = default;
    I_AttributesSink& operator=(const I_AttributesSink&) = default;
};

/// Gives attributes back by name.
class DATAOBJECTS_COMMON_EXPORT I_AttributesSource
{
public:
    virtual ~I_AttributesSource();

    /// The text of an attribute that is no list; nothing if it is absent.
    [[nodiscard]] virtual std::optional<QString> GetText(const QString& name) const = 0;
    /// The numbers of a list; empty if it is absent.
    [[nodiscard]] virtual std::vector<double> GetArray(const QString& name) const = 0;

protected:
    I_AttributesSource() = default;
    I_AttributesSource(const I_AttributesSource&) = default;
    I_AttributesSource& operator=(const I_AttributesSource&) = default;
};

} // namespace RTE
