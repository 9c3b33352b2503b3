// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/NameText.h"

#include <algorithm>

namespace BufferApi
{

QString nameToText(const std::string& name)
{
    const QByteArrayView bytes(name.data(), static_cast<qsizetype>(name.size()));
    const bool isAscii = std::all_of(bytes.begin(), bytes.end(), [](char c) { return c >= 0; });
    if (!isAscii) {
        const QString text = QString::fromUtf8(bytes);
        const bool isBeyondLatin1 =
            std::any_of(text.begin(), text.end(), [](QChar c) { return c.unicode() > 0xFF; });
        if (isBeyondLatin1 && text.toUtf8() == bytes) {
            return text;
        }
    }
    return QString::fromLatin1(bytes);
}

std::string nameFromText(const QString& text)
{
    const QByteArray latin1 = text.toLatin1();
    return QString::fromLatin1(latin1) == text ? latin1.toStdString() : text.toStdString();
}

} // namespace BufferApi
