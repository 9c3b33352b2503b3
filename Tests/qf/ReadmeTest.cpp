// SPDX-License-Identifier: Apache-2.0
#include <QRegularExpression>

namespace
{

QString textOf(const QString& name)
{
    QFile file(QStringLiteral(SOURCE_FOLDER "/") + name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// The code that the README shows is compiled as part of an example, to the letter.
TEST(Readme, showsCodeThatCompiles)
{
    const QRegularExpression block(QStringLiteral("```cpp\n(.*?)```"),
                                   QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = block.match(textOf("README.md"));
    ASSERT_TRUE(match.hasMatch());
    EXPECT_THAT(textOf("Examples/SubtractImages.cpp").toStdString(),
                testing::HasSubstr(match.captured(1).toStdString()));
}

} // namespace
