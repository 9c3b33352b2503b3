// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/Settings.h"
#include "Core/Common/Point.h"
#include "Tests/Support/Raises.h"

#include <QPointF>

#include <cmath>
#include <limits>

namespace
{

using Storage::Settings;
using TestSupport::raises;

QString key(const char* text)
{
    return QString::fromUtf8(text);
}

template <typename T>
T throughSettings(const T& value)
{
    Settings settings;
    settings.Set(key("k"), value);
    return settings.Get<T>(key("k"));
}

TEST(Settings, ValuesComeBackTheSame)
{
    using Limits = std::numeric_limits<double>;
    for (const double value :
         {0.1, -0.0, 1.0 / 3.0, Limits::max(), Limits::denorm_min(), Limits::infinity()}) {
        EXPECT_EQ(throughSettings(value), value);
        EXPECT_EQ(std::signbit(throughSettings(value)), std::signbit(value));
    }
    EXPECT_TRUE(std::isnan(throughSettings(Limits::quiet_NaN())));
    EXPECT_EQ(throughSettings(std::numeric_limits<int>::min()), std::numeric_limits<int>::min());
    EXPECT_EQ(throughSettings(4294967295U), 4294967295U);
    EXPECT_EQ(throughSettings(static_cast<unsigned short>(65535)), 65535);
    EXPECT_EQ(throughSettings(false), false);
    EXPECT_EQ(throughSettings(QStringLiteral(" a\n<é> ")), QStringLiteral(" a\n<é> "));
}

TEST(Settings, RefusesAnotherTypeAndAMissingKey)
{
    Settings settings;
    settings.Set(key("text"), QStringLiteral("1.5"));
    settings.Set(key("big"), 65536);
    settings.GetChild(key("node"))->Set(key("x"), 1);
    EXPECT_EQ(settings.Get<double>(key("text")), 1.5);
    EXPECT_TRUE(raises<RTE::ParseError>("Settings value '1.5' under the key 'text' has another type",
                                        [&] { static_cast<void>(settings.Get(key("text"), 7)); }));
    EXPECT_TRUE(raises<RTE::ParseError>("Settings value '65536' under the key 'big' has another type", [&] {
        static_cast<void>(settings.Get<unsigned short>(key("big")));
    }));
    EXPECT_TRUE(raises<RTE::ParseError>("Settings value '65536' under the key 'big' has another type",
                                        [&] { static_cast<void>(settings.Get<bool>(key("big"))); }));
    for (const char* absent : {"none", "node"}) {
        EXPECT_TRUE(raises<RTE::InvalidRequest>(
            QStringLiteral("No settings value under the key '%1'").arg(key(absent)),
            [&] { static_cast<void>(settings.Get<int>(key(absent))); }));
        EXPECT_EQ(settings.Get(key(absent), 7), 7);
    }
    EXPECT_TRUE(raises<RTE::InvalidRequest>("Settings node holds no value",
                                            [&] { static_cast<void>(settings.GetValue<int>()); }));
    EXPECT_TRUE(raises<RTE::InvalidArgumentError>("Settings text holds the sign 0",
                                                  [&] { settings.Set(key("zero"), QString(QChar(u'\0'))); }));
    EXPECT_FALSE(settings.Contains(key("zero")));
}

TEST(Settings, NodeHoldsAValueOrChildren)
{
    Settings settings;
    settings.Set(key("k"), 1);
    const auto node = settings.GetChild(key("k"));
    EXPECT_TRUE(settings.HasValue(key("k")));
    node->Set(key("x"), 2);
    EXPECT_TRUE(settings.Contains(key("k")));
    EXPECT_FALSE(settings.HasValue(key("k")));

    settings.Set(key("k"), 3);
    EXPECT_EQ(node->GetValue<int>(), 3);
    EXPECT_TRUE(node->GetKeys().empty());
    node->GetChild(key("y"));
    EXPECT_FALSE(node->HasValue());
    settings.Set(key("k"), 3);

    const Settings& readOnly = settings;
    EXPECT_EQ(readOnly.GetChild(key("none")), nullptr);
    EXPECT_FALSE(settings.Contains(key("none")));
    settings.Remove(key("k"));
    settings.Remove(key("none"));
    EXPECT_FALSE(settings.Contains(key("k")));
    EXPECT_EQ(node->GetValue<int>(), 3);
}

TEST(Settings, CollectionsCountFromZero)
{
    Settings settings;
    for (const char* text : {"Point", "Line", "Point"}) {
        settings.GetChild(key("Shape"), settings.GetNextCollectionIndex(key("Shape")))->SetClass(key(text));
    }
    EXPECT_EQ(settings.GetNextCollectionIndex(key("Shape")), 3U);
    EXPECT_EQ(settings.GetClass(key("Shape"), 1), QStringLiteral("Line"));
    EXPECT_EQ(settings.GetClass(key("Shape"), 3), QString());
    EXPECT_FALSE(settings.HasValue(key("Shape")));
    EXPECT_TRUE(raises<RTE::OutOfRangeError>("index", [&] { settings.GetChild(key("Shape"), 4); }));

    settings.Set(key("Shape"), 1);
    EXPECT_EQ(settings.GetNextCollectionIndex(key("Shape")), 1U);
    EXPECT_EQ(settings.GetClass(key("Shape"), 0), QString());
    settings.GetChild(key("%2"), 0);
    EXPECT_EQ(settings.GetChild(key("%2"), 1)->GetPath(), QStringLiteral("%2[1]"));
}

TEST(Settings, CopiesAreDeepAndMayOverlap)
{
    Settings settings;
    settings.SetClass(key("outer"));
    const auto inner = settings.GetChild(key("inner"));
    inner->SetVersion(3);
    inner->Set(key("x"), 1);

    Settings copy(settings);
    copy.GetChild(key("inner"))->Set(key("x"), 2);
    EXPECT_EQ(inner->Get<int>(key("x")), 1);
    EXPECT_EQ(copy.GetChild(key("inner"))->GetVersion(), 3U);

    settings = *inner;
    EXPECT_EQ(settings.Get<int>(key("x")), 1);
    EXPECT_TRUE(settings.IsClass(QString()));
    EXPECT_FALSE(settings.Contains(key("inner")));
    copy = copy;
    EXPECT_EQ(copy.GetChild(key("inner"))->Get<int>(key("x")), 2);
    *copy.GetChild(key("inner")) = copy;
    EXPECT_TRUE(copy.GetChild(key("inner"))->GetChild(key("inner"))->HasValue(key("x")));
}

TEST(Settings, ChildOutlivesItsTreeAndKnowsItsPath)
{
    std::shared_ptr<Settings> child;
    {
        Settings settings;
        settings.GetChild(key("Shapes"))->GetChild(key("Shape"), 0);
        child = settings.GetChild(key("Shapes"))->GetChild(key("Shape"), 1);
        EXPECT_EQ(child->GetPath(), QStringLiteral("Shapes/Shape[1]"));
        const auto removed = settings.GetChild(key("Removed"));
        settings.Remove(key("Removed"));
        EXPECT_EQ(removed->GetPath(), QString());
    }
    child->Set(key("x"), 1);
    EXPECT_EQ(child->GetPath(), QString());
}

TEST(Settings, PointsAreStoredWithTheirOwnType)
{
    Settings settings;
    const Math::Point2T<unsigned int> pixel(4294967295U, 0);
    const Math::Vector2T<float> direction(0.1F, -1e-30F);
    const QPointF position(0.1, -2.0);
    EXPECT_EQ(&pixel.SerializeTo(*settings.GetChild(key("pixel"))), settings.GetChild(key("pixel")).get());
    direction.SerializeTo(*settings.GetChild(key("direction")));
    SerializeTo(position, *settings.GetChild(key("position")));

    Math::Point2T<unsigned int> pixelRead(7, 7);
    Math::Vector2T<float> directionRead;
    QPointF positionRead;
    pixelRead.DeserializeFrom(*settings.GetChild(key("pixel")));
    directionRead.DeserializeFrom(*settings.GetChild(key("direction")));
    DeserializeFrom(positionRead, *settings.GetChild(key("position")));
    EXPECT_EQ(pixelRead, pixel);
    EXPECT_EQ(directionRead, direction);
    EXPECT_EQ(positionRead, position);

    pixelRead.DeserializeFrom(Settings());
    EXPECT_EQ(pixelRead, Math::Point2T<unsigned int>());
}

} // namespace
