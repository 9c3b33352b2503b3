// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/Attributes.h"

namespace DataObjects
{

Attributes::~Attributes() = default;

void Attributes::merge(const Attributes& source, AttributesMerge mode)
{
    for (const Attribute& attribute : source.toStdVector()) {
        const bool isKept = mode == AttributesMerge::KeepExisting && contains(attribute.name);
        // Setting a null value would remove the target's group.
        if (!isKept && !attribute.value.IsNull()) {
            replaceAV(attribute.name, attribute.value);
        }
    }
}

void Attributes::replaceAV(const std::string& name, const AttributeValue& value)
{
    setAV(name, value);
}

bool hasEllipseData(const Attributes& attributes)
{
    const AttributeValue orientation = attributes.attributeValue("CellSizeOrientation");
    return !orientation.IsNull() && orientation.value<int>() == 10;
}

} // namespace DataObjects
