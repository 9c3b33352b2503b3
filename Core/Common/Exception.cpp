// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/Exception.h"

#include <QIODevice>
#include <QLoggingCategory>

namespace RTE
{

namespace
{

Q_LOGGING_CATEGORY(exceptionLog, "rte.exception")

} // namespace

Exception::Exception(const QString& message) : m_message(message), m_what(message.toStdString()) {}

Exception::~Exception() = default;

void Exception::setLocation(const QString& file, unsigned int line)
{
    m_file = file;
    m_line = line;
    m_what = QStringLiteral("%1 (%2:%3)").arg(m_message, file, QString::number(line)).toStdString();
}

void Exception::log() const
{
    qCWarning(exceptionLog).noquote() << QString::fromStdString(m_what);
}

VerificationFailed::VerificationFailed() : Exception(QStringLiteral("Verification failed")) {}

InvalidArgumentError::InvalidArgumentError() : Exception(QStringLiteral("Invalid argument")) {}

ParseError::ParseError(const QString& message, int line, int column)
    : Exception(message), m_line(line), m_column(column)
{
}

FileWriteError::FileWriteError(const QIODevice& device, const QString& message)
    : FileError(device.errorString().isEmpty() ? message
                                               : QStringLiteral("%1: %2").arg(message, device.errorString()))
{
}

} // namespace RTE
