// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/ZtPugi.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include <pugixml.hpp>

namespace
{

TEST(ZtPugi, ReadsPathsAndValuesBeyondAscii)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("µ.xml"));
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a unit=\"\xB5m\"/>");
    }
    pugi::xml_document document;
    ASSERT_TRUE(ZtPugi::loadFromFile(document, path));
    EXPECT_EQ(ZtPugi::attributeAsQString(document.child("a"), "unit"), QStringLiteral("µm"));
    EXPECT_EQ(ZtPugi::attributeAsQString(document.child("b"), "unit"), QString());

    EXPECT_EQ(ZtPugi::loadFromFile(document, folder.filePath(QStringLiteral("none.xml"))).status,
              pugi::status_file_not_found);
    EXPECT_TRUE(document.first_child().empty());
}

} // namespace
