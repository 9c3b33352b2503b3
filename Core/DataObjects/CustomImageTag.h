// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/Attributes.h"

#include <optional>

namespace DataObjects
{

struct GlobalAndFrameAttributes;

/// A name with a text that a user attached to images.
///
/// Stored as plain attributes: "CustomImageTag_Count" holds the number of tags, "CustomImageTag0_Name" and
/// "CustomImageTag0_Value" the first of them.
struct CustomImageTag
{
    QString name;
    QString value;

    [[nodiscard]] friend bool operator==(const CustomImageTag&, const CustomImageTag&) = default;
};

/// The tags in their order, up to the number that is stored; above 1000 no further than the first that has
/// neither name nor value. A missing text is empty.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::vector<CustomImageTag>
getCustomImageTags(const Attributes& attributes);
/// The global tags, then those of each frame whose name has not come before.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::vector<CustomImageTag>
getCustomImageTags(const GlobalAndFrameAttributes& attributes);

/// Replaces all tags.
DATAOBJECTS_DATAOBJECTS_EXPORT void setCustomImageTags(const std::vector<CustomImageTag>& tags,
                                                       Attributes& attributes);

DATAOBJECTS_DATAOBJECTS_EXPORT void deleteCustomImageTags(Attributes& attributes);

/// The value of the first tag of this name.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::optional<QString>
getCustomImageTag(const std::vector<CustomImageTag>& tags, const QString& name);

} // namespace DataObjects
