// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/GlobalAndFrameAttributes.h"

#include <map>

namespace DataObjects
{

/// All attributes as text: "attr:" + name for an attribute, where a frame overrides the global value and a
/// later frame an earlier one, "tag:" + name for a custom image tag, "device:" + alias for the average of a
/// device.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::map<QString, QString>
GetKeyValuePairsFromAttributes(const GlobalAndFrameAttributes& attributes, bool withCustomImageTags,
                               bool withDeviceData);

/// Fills the placeholders of a text, such as "<attr:Camera.Name>", with the values of those pairs. One of a
/// known prefix without a value becomes "_"; one of another prefix stays.
/// \param forFileName replaces what may not stand in a file name in the values by "_"
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT QString
resolveAttributes(const QString& text, const GlobalAndFrameAttributes& attributes, bool forFileName);

} // namespace DataObjects
