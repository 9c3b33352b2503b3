// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/NumberedFiles.h"

#include "Tools/qf/Session.h"

#include "Core/Common/Raise.h"

#include <QRegularExpression>

namespace Qf
{

namespace
{

/// The last slash is followed by the file's name.
QRegularExpressionMatch matchNumber(const QString& path)
{
    static const QRegularExpression number(QStringLiteral("%(?:0([1-9]))?d"));
    return number.match(path, path.lastIndexOf(QLatin1Char('/')) + 1);
}

} // namespace

bool NumberedFiles::isPattern(const QString& path)
{
    return matchNumber(path).hasMatch();
}

NumberedFiles::NumberedFiles(const QString& pattern)
{
    const QRegularExpressionMatch number = matchNumber(pattern);
    m_before = pattern.left(number.capturedStart());
    m_after = pattern.mid(number.capturedEnd());
    m_digits = number.captured(1).toInt();
    if (isPattern(m_after)) {
        RTE::raise(UsageError(QStringLiteral("%1: has two places for the number; keep one").arg(pattern)));
    }
}

QString NumberedFiles::name(unsigned int number) const
{
    return m_before + QStringLiteral("%1").arg(number, m_digits, 10, QLatin1Char('0')) + m_after;
}

} // namespace Qf
