// SPDX-License-Identifier: Apache-2.0
#include "Tests/Support/Files.h"

#include <gtest/gtest.h>

#include <QFile>

namespace TestSupport
{

QString goldenFile(const std::string& name)
{
    return QStringLiteral(DATAOBJECTS_GOLDEN_DIR "/") + QString::fromStdString(name);
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

void writeContent(const QString& path, const QByteArray& content)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate)) << path.toStdString();
    EXPECT_EQ(file.write(content), content.size());
}

} // namespace TestSupport
