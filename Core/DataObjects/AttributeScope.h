// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/Export.h"

#include <QString>

namespace DataObjects
{

/// Where an attribute of a buffer stands.
enum class AttributeScope
{
    None = 0,
    Global = 1,
    Frame = 2,
    DeviceData = 3,
    CustomImageTag = 4
};

/// "None", "Global", "Frame", "Device Data" or "Custom Image Tag"; "None" for any other number.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT QString getAttributeScopeAsString(AttributeScope scope);

} // namespace DataObjects
