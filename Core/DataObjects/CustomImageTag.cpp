// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/CustomImageTag.h"

#include "Core/DataObjects/GlobalAndFrameAttributes.h"

#include <algorithm>

namespace DataObjects
{

namespace
{

const std::string countName = "CustomImageTag_Count";

std::string itemName(int index, const char* item)
{
    return "CustomImageTag" + std::to_string(index) + item;
}

std::string nameName(int index)
{
    return itemName(index, "_Name");
}

std::string valueName(int index)
{
    return itemName(index, "_Value");
}

/// A number up to this is taken as it is stored. A larger one may be damage, and without its tags it must not
/// keep anybody busy.
constexpr int plausibleCount = 1000;

int tagCount(const Attributes& attributes)
{
    const AttributeValue stored = attributes.attributeValue(countName);
    const int count = stored.IsNull() ? 0 : stored.value<int>();
    if (count <= plausibleCount) {
        return count;
    }
    int present = 0;
    while (present < count &&
           (attributes.contains(nameName(present)) || attributes.contains(valueName(present)))) {
        ++present;
    }
    return present;
}

} // namespace

std::vector<CustomImageTag> getCustomImageTags(const Attributes& attributes)
{
    std::vector<CustomImageTag> tags;
    const int count = tagCount(attributes);
    for (int i = 0; i < count; ++i) {
        tags.push_back({attributes.attributeValue(nameName(i)).toString(),
                        attributes.attributeValue(valueName(i)).toString()});
    }
    return tags;
}

std::vector<CustomImageTag> getCustomImageTags(const GlobalAndFrameAttributes& attributes)
{
    std::vector<CustomImageTag> tags = getCustomImageTags(static_cast<const Attributes&>(attributes));
    for (const AttributesContainer& frame : attributes.frameAttributes) {
        for (const CustomImageTag& tag : getCustomImageTags(static_cast<const Attributes&>(frame))) {
            if (!getCustomImageTag(tags, tag.name)) {
                tags.push_back(tag);
            }
        }
    }
    return tags;
}

void setCustomImageTags(const std::vector<CustomImageTag>& tags, Attributes& attributes)
{
    deleteCustomImageTags(attributes);
    attributes.set(countName, static_cast<int>(tags.size()));
    for (int i = 0; i < static_cast<int>(tags.size()); ++i) {
        attributes.set(nameName(i), tags[static_cast<std::size_t>(i)].name);
        attributes.set(valueName(i), tags[static_cast<std::size_t>(i)].value);
    }
}

void deleteCustomImageTags(Attributes& attributes)
{
    const int count = tagCount(attributes);
    attributes.remove(countName);
    for (int i = 0; i < count; ++i) {
        attributes.remove(nameName(i));
        attributes.remove(valueName(i));
    }
}

std::optional<QString> getCustomImageTag(const std::vector<CustomImageTag>& tags, const QString& name)
{
    const auto found =
        std::find_if(tags.begin(), tags.end(), [&](const CustomImageTag& tag) { return tag.name == name; });
    return found == tags.end() ? std::nullopt : std::optional(found->value);
}

} // namespace DataObjects
