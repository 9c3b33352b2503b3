// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/FileNameOps.h"

#include "Core/Common/Raise.h"

#include <QRegularExpression>

namespace RTE::FileNameOps
{

namespace
{

bool isRefused(QChar sign, bool portable)
{
    if (sign == QLatin1Char('/') || sign.isNull()) {
        return true;
    }
    const char16_t code = sign.unicode();
    return portable && (code < 0x20 || code == 0x7F || QStringLiteral("\\:*?\"<>|").contains(sign));
}

bool isRefusedAtEnd(QChar sign)
{
    return sign == QLatin1Char(' ') || sign == QLatin1Char('.');
}

qsizetype lengthOfDeviceName(const QString& name)
{
    static const QRegularExpression device(QStringLiteral("^(CON|PRN|AUX|NUL|(COM|LPT)[1-9])(?=\\.|$)"),
                                           QRegularExpression::CaseInsensitiveOption);
    return device.match(name).capturedLength();
}

} // namespace

QString MakeValidFileName(const QString& text, char replacement, bool portable)
{
    const QChar substitute = QLatin1Char(replacement);
    if (isRefused(substitute, portable) || isRefusedAtEnd(substitute)) {
        raise(InvalidArgumentError(QStringLiteral("Replacement is not valid in file names")));
    }
    QString name = text;
    for (QChar& sign : name) {
        sign = isRefused(sign, portable) ? substitute : sign;
    }
    if (name == QStringLiteral(".") || name == QStringLiteral("..")) {
        name.fill(substitute);
    }
    if (portable) {
        for (qsizetype i = name.size(); i > 0 && isRefusedAtEnd(name.at(i - 1)); --i) {
            name[i - 1] = substitute;
        }
        if (const qsizetype stem = lengthOfDeviceName(name); stem > 0) {
            name.insert(stem, substitute);
        }
    }
    return name;
}

} // namespace RTE::FileNameOps
