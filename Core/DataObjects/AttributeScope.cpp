// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/AttributeScope.h"

namespace DataObjects
{

QString getAttributeScopeAsString(AttributeScope scope)
{
    switch (scope) {
    case AttributeScope::Global:
        return QStringLiteral("Global");
    case AttributeScope::Frame:
        return QStringLiteral("Frame");
    case AttributeScope::DeviceData:
        return QStringLiteral("Device Data");
    case AttributeScope::CustomImageTag:
        return QStringLiteral("Custom Image Tag");
    case AttributeScope::None:
        break;
    }
    return QStringLiteral("None");
}

} // namespace DataObjects
