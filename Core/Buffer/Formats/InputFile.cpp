// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/InputFile.h"

#include "Core/Common/Raise.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace BufferApi::Formats
{

namespace
{

QString systemReason()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

} // namespace

InputFile::InputFile(const QString& path)
    // Without O_NONBLOCK a named pipe without a writer would hang here.
    : m_path(path), m_descriptor(open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK))
{
    if (m_descriptor < 0) {
        RTE::raise(RTE::FileOpenError(QStringLiteral("Cannot open '%1': %2").arg(path, systemReason())));
    }
    struct stat status = {};
    if (fstat(m_descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        close(m_descriptor);
        RTE::raise(RTE::FileOpenError(QStringLiteral("Cannot open '%1': not a regular file").arg(path)));
    }
    m_size = static_cast<unsigned long long>(status.st_size);
}

InputFile::~InputFile()
{
    close(m_descriptor);
}

void InputFile::read(unsigned long long offset, void* destination, unsigned long long bytes) const
{
    auto* next = static_cast<char*>(destination);
    while (bytes > 0) {
        const ssize_t count = pread(m_descriptor, next, bytes, static_cast<off_t>(offset));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            refuse(count < 0 ? systemReason() : QStringLiteral("the file ends early"));
        }
        next += count;
        offset += static_cast<unsigned long long>(count);
        bytes -= static_cast<unsigned long long>(count);
    }
}

QByteArray InputFile::readUpTo(unsigned long long offset, unsigned long long bytes) const
{
    const unsigned long long count = offset < m_size ? std::min(bytes, m_size - offset) : 0;
    QByteArray content(static_cast<qsizetype>(count), Qt::Uninitialized);
    read(offset, content.data(), count);
    return content;
}

void InputFile::refuse(const QString& reason, RTE::SourceLocation location) const
{
    RTE::raise(RTE::FileReadError(QStringLiteral("Cannot read '%1': %2").arg(m_path, reason)), location);
}

} // namespace BufferApi::Formats
