// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/AttributesSink.h"
#include "Core/DataObjects/Attributes.h"

namespace DataObjects::Private
{

/// Lets code that knows only the source read attributes, which must outlive it.
class AttributesSource final : public RTE::I_AttributesSource
{
public:
    explicit AttributesSource(const Attributes& attributes) noexcept : m_attributes(attributes) {}

    [[nodiscard]] std::optional<QString> GetText(const QString& name) const override;
    [[nodiscard]] std::vector<double> GetArray(const QString& name) const override;

private:
    const Attributes& m_attributes;
};

} // namespace DataObjects::Private
