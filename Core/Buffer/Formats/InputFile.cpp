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

QString changed()
{
    return QStringLiteral("the file was changed while it was open");
}

} // namespace

InputFile::InputFile(const QString& path) : m_path(path)
{
    // The system takes a name to its first null character, which would be that of another file.
    errno = EINVAL;
    // Without O_NONBLOCK a named pipe without a writer would hang here.
    m_descriptor = path.contains(QChar(0))
                       ? -1
                       : open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (m_descriptor < 0) {
        RTE::raise(RTE::FileOpenError(QStringLiteral("Cannot open '%1': %2").arg(path, systemReason())));
    }
    struct stat status = {};
    if (fstat(m_descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        close(m_descriptor);
        RTE::raise(RTE::FileOpenError(QStringLiteral("Cannot open '%1': not a regular file").arg(path)));
    }
    m_size = static_cast<unsigned long long>(status.st_size);
    m_modified = status.st_mtim;
}

InputFile::~InputFile()
{
    close(m_descriptor);
}

bool InputFile::isChanged() const
{
    struct stat status = {};
    if (fstat(m_descriptor, &status) != 0) {
        return true;
    }
    const auto size = static_cast<unsigned long long>(status.st_size);
    const bool isOfSameTime =
        status.st_mtim.tv_sec == m_modified.tv_sec && status.st_mtim.tv_nsec == m_modified.tv_nsec;
    return size < m_size || (size == m_size && !isOfSameTime);
}

void InputFile::read(unsigned long long offset, void* destination, unsigned long long bytes) const
{
    if (const QString reason = tryRead(offset, destination, bytes); !reason.isNull()) {
        refuse(reason);
    }
}

QString InputFile::tryRead(unsigned long long offset, void* destination, unsigned long long bytes) const
{
    const QString reason = tryReadPart(offset, destination, bytes);
    return reason.isNull() && isChanged() ? changed() : reason;
}

void InputFile::readPart(unsigned long long offset, void* destination, unsigned long long bytes) const
{
    if (const QString reason = tryReadPart(offset, destination, bytes); !reason.isNull()) {
        refuse(reason);
    }
}

void InputFile::checkUnchanged() const
{
    if (isChanged()) {
        refuse(changed());
    }
}

QString InputFile::tryReadPart(unsigned long long offset, void* destination, unsigned long long bytes) const
{
    auto* next = static_cast<char*>(destination);
    while (bytes > 0) {
        const ssize_t count = pread(m_descriptor, next, bytes, static_cast<off_t>(offset));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return systemReason();
        }
        if (count == 0) {
            return isChanged() ? changed() : QStringLiteral("the file ends early");
        }
        next += count;
        offset += static_cast<unsigned long long>(count);
        bytes -= static_cast<unsigned long long>(count);
    }
    return {};
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
    // What is wrong with the content of a changed file says nothing about it.
    RTE::raise(RTE::FileReadError(
                   QStringLiteral("Cannot read '%1': %2").arg(m_path, isChanged() ? changed() : reason)),
               location);
}

} // namespace BufferApi::Formats
