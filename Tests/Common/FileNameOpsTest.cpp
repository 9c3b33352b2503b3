// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/FileNameOps.h"
#include "Tests/Support/Raises.h"

namespace
{

using RTE::FileNameOps::MakeValidFileName;

TEST(FileNameOps, ReplacesWhatMayNotStandInAName)
{
    struct Case
    {
        const char* text;
        const char* here;
        const char* portable;
    };
    const Case cases[] = {
        {"", "", ""},
        {"run 1", "run 1", "run 1"},
        {"a/b\\c:d", "a_b\\c:d", "a_b_c_d"},
        {"x\t*?\"<>|", "x\t*?\"<>|", "x_______"},
        {"..", "__", "__"},
        {"...", "...", "___"},
        {"end. ", "end. ", "end__"},
        {".hidden", ".hidden", ".hidden"},
        {"CON", "CON", "CON_"},
        {"com1.txt", "com1.txt", "com1_.txt"},
        {"CONE", "CONE", "CONE"},
        {"\xB5m", "\xB5m", "\xB5m"},
    };
    for (const Case& c : cases) {
        const QString text = QString::fromLatin1(c.text);
        EXPECT_EQ(MakeValidFileName(text, '_', false), QString::fromLatin1(c.here));
        EXPECT_EQ(MakeValidFileName(text, '_', true), QString::fromLatin1(c.portable));
    }
    EXPECT_EQ(MakeValidFileName(QString(QChar(u'\0')), '-', false), QStringLiteral("-"));
}

TEST(FileNameOps, RefusesAReplacementThatIsNoImprovement)
{
    for (const auto& [sign, portable] : {std::pair('/', false), {':', true}, {'.', true}}) {
        EXPECT_TRUE(TestSupport::raises<RTE::InvalidArgumentError>(
            QStringLiteral("Replacement is not valid in file names"),
            [&] { static_cast<void>(MakeValidFileName(QStringLiteral("a"), sign, portable)); }));
    }
}

} // namespace
