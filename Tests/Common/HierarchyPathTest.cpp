// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/HierarchyPath.h"

#include <gtest/gtest.h>

namespace
{

RTE::HierarchyPath path(const char* text)
{
    return {QString::fromLatin1(text), QStringLiteral("/")};
}

TEST(HierarchyPath, SplitsAtTheSeparatorAndJoinsWithSlashes)
{
    EXPECT_EQ(path("/a//b/").AsString(), QStringLiteral("a/b"));
    EXPECT_EQ(path("").GetDepth(), 0U);
    EXPECT_EQ(path(""), RTE::HierarchyPath());
    EXPECT_EQ(RTE::HierarchyPath(QStringLiteral("a::b/c"), QStringLiteral("::")).GetDepth(), 2U);
    EXPECT_EQ(RTE::HierarchyPath(QStringLiteral("a/b"), QString()).GetDepth(), 1U);
}

TEST(HierarchyPath, GoesDownInPlaceAndUpByValue)
{
    RTE::HierarchyPath down = path("a");
    down.AddChild(QStringLiteral("b"));
    down.AddChild(QString());
    EXPECT_EQ(down, path("a/b"));
    EXPECT_EQ(down.Last(), QStringLiteral("b"));
    EXPECT_EQ(down.GetParent(), path("a"));
    EXPECT_EQ(path("a").GetParent().GetParent(), RTE::HierarchyPath());
    EXPECT_EQ(RTE::HierarchyPath().Last(), QString());
}

TEST(HierarchyPath, ComparesWholePartsWithCase)
{
    EXPECT_TRUE(path("a/b/c").StartsWith(path("a/b")));
    EXPECT_TRUE(path("a").StartsWith(path("a")));
    EXPECT_TRUE(path("a").StartsWith(RTE::HierarchyPath()));
    EXPECT_FALSE(path("a/bc").StartsWith(path("a/b")));
    EXPECT_FALSE(path("a").StartsWith(path("a/b")));
    EXPECT_FALSE(path("A/b").StartsWith(path("a")));
}

TEST(HierarchyPath, TrimsTheSharedParentsOnly)
{
    EXPECT_EQ(path("a/b/c/d").TrimParents(path("a/b")), path("c/d"));
    EXPECT_EQ(path("a/b/c").TrimParents(path("a/x/c")), path("b/c"));
    EXPECT_EQ(path("b/a").TrimParents(path("a")), path("b/a"));
    EXPECT_EQ(path("a/b").TrimParents(path("a/b/c")), RTE::HierarchyPath());
}

} // namespace
