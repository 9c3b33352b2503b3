// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/BoundingBox.h"
#include "Core/Common/Euclidean.h"
#include "Core/Common/Point.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iomanip>
#include <limits>
#include <numbers>
#include <sstream>

namespace
{

using Math::Euclidean;
using Vector = Math::Vector3T<double>;
using Point = Math::Point3T<double>;

void expectNear(const Vector& actual, const Vector& expected)
{
    EXPECT_NEAR(actual.x, expected.x, 1e-15);
    EXPECT_NEAR(actual.y, expected.y, 1e-15);
    EXPECT_NEAR(actual.z, expected.z, 1e-15);
}

TEST(Point, DistanceOfUnsignedPointsDoesNotWrap)
{
    using Pixel = Math::Point3T<unsigned int>;
    static_assert(Pixel(1, 2, 3).DistanceToSqr(Pixel(4, 0, 3)) == 13.0);
    static_assert(Pixel(0, 0, 0).DistanceToSqr(Pixel(4000000000U, 0, 0)) == 1.6e19);
    static_assert(Point(Vector(1.0, 2.0, 3.0)) == Point(1.0, 2.0, 3.0));
    static_assert(Math::Point2T<int>(1, 2) != Math::Point2T<int>(2, 1));
}

TEST(Point, StreamIgnoresTheStreamsFormat)
{
    std::ostringstream text;
    text << std::fixed << std::setprecision(1) << Math::Point3T<float>(0.125F, -3.0F, 1e30F);
    EXPECT_EQ(text.str(), "(0.125, -3, 1e+30)");
}

TEST(Vector, NormalizedKeepsDirectionAndSurvivesExtremes)
{
    using Vector2 = Math::Vector2T<double>;
    EXPECT_EQ(Vector2(3.0, -4.0).Normalized(), Vector2(0.6, -0.8));
    EXPECT_EQ(Vector2(0.0, 1e300).Normalized(), Vector2(0.0, 1.0));
    EXPECT_EQ(Vector2(0.0, 0.0).Normalized(), Vector2(0.0, 0.0));
}

TEST(BoundingBox, WidensFromEmptyAndFlatIsNotEmpty)
{
    Math::BoundingBoxT<double> box;
    EXPECT_TRUE(box.IsEmpty());
    EXPECT_EQ(box.GetCenter(), Point());
    EXPECT_EQ(box.GetDepth(), 0.0);

    box.Add({-1.0, 2.0, 5.0});
    EXPECT_FALSE(box.IsEmpty());
    EXPECT_EQ(box.GetDepth(), 0.0);
    box.Add({3.0, std::numeric_limits<double>::quiet_NaN(), 7.0});
    EXPECT_EQ(box.GetMin(), Point(-1.0, 2.0, 5.0));
    EXPECT_EQ(box.GetMax(), Point(3.0, 2.0, 7.0));
    EXPECT_EQ(box.GetCenter(), Point(1.0, 2.0, 6.0));
    EXPECT_EQ(box.GetDepth(), 2.0);

    static_assert(Math::BoundingBoxT<float>(Point(0, 0, 1), Point(1, 1, 0)).IsEmpty());
    static_assert(!Math::BoundingBoxT<float>(Point(1, 1, 1), Point(1, 1, 1)).IsEmpty());
}

TEST(Euclidean, RotatesAboutXThenYThenZRightHandedThenMoves)
{
    const double quarter = std::numbers::pi / 2.0;
    struct Case
    {
        const char* name;
        Euclidean motion;
        Vector expected;
    };
    // The image of (1, 2, 3).
    const Case cases[] = {
        {"identity", Euclidean(), {1.0, 2.0, 3.0}},
        {"about x", Euclidean(quarter, 0, 0, 0, 0, 0), {1.0, -3.0, 2.0}},
        {"about y", Euclidean(0, quarter, 0, 0, 0, 0), {3.0, 2.0, -1.0}},
        {"about z", Euclidean(0, 0, quarter, 0, 0, 0), {-2.0, 1.0, 3.0}},
        {"x before y", Euclidean(quarter, quarter, 0, 0, 0, 0), {2.0, -3.0, -1.0}},
        {"x before z, then moved", Euclidean(quarter, 0, quarter, 10, 20, 30), {13.0, 21.0, 32.0}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        expectNear(c.motion * Vector(1.0, 2.0, 3.0), c.expected);
        expectNear(c.motion.GetInverted() * c.expected, {1.0, 2.0, 3.0});
    }
}

TEST(Euclidean, ProductAppliesTheRightFactorFirst)
{
    const Euclidean turn(0.3, -0.2, 1.1, 0.0, 0.0, 0.0);
    const Euclidean move(0.0, 0.0, 0.0, 1.0, 2.0, 3.0);
    const Vector x(0.5, -0.25, 2.0);
    expectNear(turn * move * x, turn * (move * x));
    expectNear(move * turn * x, move * (turn * x));
    EXPECT_GT(std::abs((turn * move * x).x - (move * turn * x).x), 0.1);
}

TEST(Euclidean, RotationIsChangedThroughItsReference)
{
    Euclidean motion;
    motion.R().M5() = -1.0;
    motion.R().M9() = -1.0;
    EXPECT_EQ(motion * Vector(1.0, 2.0, 3.0), Vector(1.0, -2.0, -3.0));
    motion.R().M5() = motion.R().M9() = motion.R().M1();
    EXPECT_EQ(motion, Euclidean());
}

} // namespace
