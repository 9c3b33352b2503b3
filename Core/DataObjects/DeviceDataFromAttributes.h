// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/DeviceData.h"
#include "Core/DataObjects/Attributes.h"

namespace DataObjects
{

/// \name Records of measuring devices in the attributes of an image
/// RTE::DeviceData lists the names of their attributes. Their values are unscaled.
/// @{

/// All records in their order, up to the number that is stored or the first without a name.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::vector<RTE::DeviceDataT<double>>
GetAllDevData(const Attributes& attributes);

/// @}

} // namespace DataObjects
