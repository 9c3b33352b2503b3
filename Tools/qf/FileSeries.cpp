// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/FileSeries.h"

#include "Core/Common/Raise.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>

namespace Qf
{

namespace
{

[[noreturn]] void refuse(const QString& path, const QString& reason,
                         RTE::SourceLocation location = RTE::SourceLocation::current())
{
    RTE::raise(RTE::FileWriteError(QStringLiteral("%1: cannot write: %2").arg(path, reason)), location);
}

} // namespace

FileSeries::FileSeries(const QString& pattern) : m_names(pattern), m_folder(QFileInfo(pattern).path()) {}

void FileSeries::begin()
{
    m_parts.emplace(m_folder + QStringLiteral("/.qf-convert-XXXXXX"));
    if (!m_parts->isValid()) {
        refuse(m_folder, m_parts->errorString());
    }
}

QString FileSeries::part(unsigned int number) const
{
    return m_parts->filePath(QFileInfo(name(number)).fileName());
}

void FileSeries::commit(const std::vector<unsigned int>& numbers) const
{
    for (const unsigned int number : numbers) {
        const QByteArray from = QFile::encodeName(part(number));
        const QByteArray to = QFile::encodeName(name(number));
        if (std::rename(from.constData(), to.constData()) != 0) {
            refuse(name(number), qt_error_string(errno));
        }
    }
}

} // namespace Qf
