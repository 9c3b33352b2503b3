// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/CustomImageTag.h"

#include "Core/DataObjects/AttributesContainer.h"

namespace
{

using namespace DataObjects;

const std::vector<CustomImageTag> tags{{QStringLiteral("Sample"), QStringLiteral("A")},
                                       {QStringLiteral(u"\u0414"), QString()},
                                       {QStringLiteral("Sample"), QStringLiteral("B")}};

TEST(CustomImageTag, IsStoredAsPlainAttributes)
{
    AttributesContainer attributes;
    setCustomImageTags(tags, attributes);
    EXPECT_EQ(attributes.attributeValue("CustomImageTag_Count"), AttributeValue(3));
    EXPECT_EQ(attributes.attributeValue("CustomImageTag0_Name"), AttributeValue(QStringLiteral("Sample")));
    EXPECT_EQ(attributes.attributeValue("CustomImageTag2_Value"), AttributeValue(QStringLiteral("B")));
    EXPECT_EQ(attributes.toStdVector().size(), 7U);
    EXPECT_EQ(getCustomImageTags(attributes), tags);
    EXPECT_EQ(getCustomImageTag(tags, QStringLiteral("Sample")), QStringLiteral("A"));
    EXPECT_EQ(getCustomImageTag(tags, QStringLiteral("sample")), std::nullopt);
}

TEST(CustomImageTag, IsReplacedAndDeletedWithAllOthers)
{
    AttributesContainer attributes;
    attributes.set("CustomImageTag", "kept");
    setCustomImageTags(tags, attributes);
    setCustomImageTags({tags[0]}, attributes);
    EXPECT_EQ(attributes.toStdVector().size(), 4U);
    deleteCustomImageTags(attributes);
    EXPECT_EQ(attributes.toStdVector(), (std::vector<Attribute>{{"CustomImageTag", "kept"}}));
    deleteCustomImageTags(attributes);
    EXPECT_TRUE(getCustomImageTags(attributes).empty());
}

TEST(CustomImageTag, SurvivesDamage)
{
    AttributesContainer attributes;
    setCustomImageTags(tags, attributes);
    const std::vector<std::pair<AttributeValue, std::size_t>> countsAndFound{
        {2147483647, 3}, {1001, 3}, {1000, 1000}, {"2.9", 2}, {-1, 0}, {"many", 0}};
    for (const auto& [count, found] : countsAndFound) {
        attributes.set("CustomImageTag_Count", count);
        EXPECT_EQ(getCustomImageTags(attributes).size(), found) << count.toStdString();
    }
    attributes.set("CustomImageTag_Count", 3);
    attributes.remove("CustomImageTag1_Value");
    EXPECT_EQ(getCustomImageTags(attributes), tags);
    attributes.remove("CustomImageTag1_Name");
    EXPECT_EQ(getCustomImageTags(attributes), (std::vector<CustomImageTag>{tags[0], {}, tags[2]}));
    deleteCustomImageTags(attributes);
    EXPECT_TRUE(attributes.isEmpty());
}

} // namespace
