// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/ColorFormat.h"
#include "Core/Common/Locations.h"
#include "Core/Common/Range.h"
#include "Core/Common/StringOps.h"
#include "Core/Common/SystemInfo.h"
#include "Core/Common/Unicode.h"
#include "Core/Common/VisibilityLevel.h"
#include "Tests/Support/Raises.h"

#include <thread>

namespace
{

using TestSupport::raises;

TEST(IndexRange, MapsInsideItsCountOnly)
{
    const RTE::IndexRange range(10, 3, 5);
    EXPECT_EQ(range.Map(2), 20U);
    EXPECT_EQ(RTE::IndexRange().Map(7), 7U);
    EXPECT_TRUE(raises<RTE::OutOfRangeError>("index", [&] { static_cast<void>(range.Map(3)); }));
}

TEST(ColorFormat, KnowsTheNumbersOfTheFilterPhases)
{
    EXPECT_EQ(RTE::toColorFormat(0), RTE::ColorFormat::Monochrome);
    EXPECT_EQ(RTE::toColorFormat(257), RTE::ColorFormat::BayerGRBG);
    EXPECT_EQ(RTE::toColorFormat(769), RTE::ColorFormat::BayerBGGR);
    EXPECT_TRUE(raises<RTE::InvalidArgumentError>("Unknown color format: 42",
                                                  [] { static_cast<void>(RTE::toColorFormat(42)); }));
}

TEST(String, EndsWithDigit)
{
    EXPECT_TRUE(RTE::String::endsWithDigit("a0"));
    EXPECT_TRUE(RTE::String::endsWithDigit("9"));
    EXPECT_FALSE(RTE::String::endsWithDigit("9a"));
    EXPECT_FALSE(RTE::String::endsWithDigit(""));
    EXPECT_FALSE(RTE::String::endsWithDigit("a\xB2"));
}

TEST(SystemInfo, MemoryIsCountedInKilobytes)
{
    QFile file(QStringLiteral("/proc/meminfo"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const unsigned long long total = file.readLine().simplified().split(' ').at(1).toULongLong();
    EXPECT_NEAR(static_cast<double>(RTE::C_SystemInfo::GetInstance().GetMemoryTotal()),
                static_cast<double>(total), 0.01 * static_cast<double>(total));
}

TEST(Unicode, SignsAreThoseOfLatin1)
{
    EXPECT_EQ((Zt::Unicode::micro + Zt::Unicode::square + Zt::Unicode::degree).toLatin1(),
              QByteArray("\xB5\xB2\xB0"));
}

TEST(VisibilityLevel, IsSetForTheProcess)
{
    EXPECT_EQ(Service::GetVisibilityLevel(), Service::VisibilityLevel::User);
    Service::SetVisibilityLevel(Service::VisibilityLevel::Developer);
    EXPECT_EQ(Service::GetVisibilityLevel(), Service::VisibilityLevel::Developer);
    Service::SetVisibilityLevel(Service::VisibilityLevel::User);
}

TEST(Locations, GivenFolderReplacesTheStandardOne)
{
    const QString standard = RTE::Locations::getReadOnlySettingsPath();
    EXPECT_TRUE(standard.endsWith(QStringLiteral("/DataObjects/settings")));
    RTE::Locations::setReadOnlySettingsPath(QStringLiteral("/opt/settings"));
    EXPECT_EQ(RTE::Locations::getReadOnlySettingsPath(), QStringLiteral("/opt/settings"));
    RTE::Locations::setReadOnlySettingsPath(QString());
    EXPECT_EQ(RTE::Locations::getReadOnlySettingsPath(), standard);
}

TEST(Locations, AreSetWhileAnotherThreadReads)
{
    const QString paths[] = {QStringLiteral("/opt/a"), QStringLiteral("/opt/b")};
    RTE::Locations::setReadOnlySettingsPath(paths[0]);
    std::thread reader([&] {
        for (int i = 0; i < 1000; ++i) {
            const QString path = RTE::Locations::getReadOnlySettingsPath();
            EXPECT_TRUE(path == paths[0] || path == paths[1]);
        }
    });
    for (int i = 0; i < 1000; ++i) {
        RTE::Locations::setReadOnlySettingsPath(paths[i % 2]);
    }
    reader.join();
    RTE::Locations::setReadOnlySettingsPath(QString());
}

} // namespace
