// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/AttributesSource.h"

#include "Core/DataObjects/AttributeValueHeld.h"
#include "Core/DataObjects/Latin1.h"

namespace DataObjects::Private
{

std::optional<QString> AttributesSource::GetText(const QString& name) const
{
    const AttributeValue value = m_attributes.attributeValue(toLatin1(name));
    return value.IsScalar() ? std::optional(value.toString()) : std::nullopt;
}

std::vector<double> AttributesSource::GetArray(const QString& name) const
{
    const AttributeValue value = m_attributes.attributeValue(toLatin1(name));
    if (value.Count() == 0 || value.IsScalar()) {
        return {};
    }
    return visitListKind(value.GetType(), [&]<typename T>(PixelTypes::Tag<T>) {
        const auto list = value.value<std::vector<T>>();
        return std::vector<double>(list.begin(), list.end());
    });
}

} // namespace DataObjects::Private
