// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/Raise.h"
#include "Tests/Support/Raises.h"

namespace
{

using TestSupport::raises;

TEST(Exception, IsCaughtAsItsBasesWithTheTextAlone)
{
    try {
        RTE::raise(RTE::VerificationFailed(QStringLiteral("size is odd (3x%2)")));
    } catch (const std::exception& caught) {
        const auto* exception = dynamic_cast<const RTE::Exception*>(&caught);
        ASSERT_NE(exception, nullptr);
        EXPECT_EQ(exception->message(), QStringLiteral("size is odd (3x%2)"));
        EXPECT_THAT(caught.what(),
                    testing::MatchesRegex("size is odd \\(3x%2\\) \\(ExceptionTest:[0-9]+\\)"));
    }
    static_assert(std::is_base_of_v<RTE::FileError, RTE::FileWriteError>);
    static_assert(!std::is_base_of_v<RTE::FileError, RTE::FileIOError>);
}

TEST(Exception, LocationIsCutToTheSourcePathWherever)
{
    const auto location = [](const char* file) { return RTE::SourceLocation::current(file, 7); };
    const auto cut = [&](const char* file) {
        RTE::Exception exception(QStringLiteral("x"));
        RTE::Private::prepareToRaise(exception, location(file));
        return exception.locationFile();
    };
    EXPECT_EQ(cut("/home/Core/build/Core/DataObjects/ImageData.h"),
              QStringLiteral("Core/DataObjects/ImageData"));
    EXPECT_EQ(cut("Core/DataObjects/Mask.cpp"), QStringLiteral("Core/DataObjects/Mask"));
    EXPECT_EQ(cut("/tmp/main.cpp"), QStringLiteral("main"));
}

TEST(Exception, ShorthandsRaiseOnlyWhenViolated)
{
    RTE::verify(true, "never");
    RTE::verifyIndex(2, 3, "z");
    EXPECT_TRUE(raises<RTE::VerificationFailed>("bad", [] { RTE::verify(false, "bad"); }));
    EXPECT_TRUE(raises<RTE::OutOfRangeError>("z", [] { RTE::verifyIndex(3, 3, "z"); }));
}

} // namespace
