// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/AttributeNames.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{

TEST(AttributeNames, NoNameIsAnotherOrItsGroup)
{
#define DATAOBJECTS_LIST_NAME(constant, text, meaning) Attr::constant,
    const std::vector<std::string> names = {DATAOBJECTS_ATTRIBUTE_NAMES(DATAOBJECTS_LIST_NAME)};
#undef DATAOBJECTS_LIST_NAME
    for (std::size_t a = 0; a < names.size(); ++a) {
        for (std::size_t b = 0; b < names.size(); ++b) {
            if (a != b) {
                EXPECT_NE(names[a], names[b]);
                EXPECT_FALSE(names[b].starts_with(names[a] + '.')) << names[a] << ' ' << names[b];
            }
        }
    }
}

TEST(AttributeNames, FixedTexts)
{
    const std::string& transformed = Attr::acqAttributesTransformed;
    EXPECT_EQ(transformed, "Acq.AttributesTransformed");
    EXPECT_EQ(Attr::rgbFrame.toQString(), QStringLiteral("RGBFrame"));
    EXPECT_EQ(Attr::preferredDisplayMode.toStdString(), "PreferredDisplayMode");
}

} // namespace
