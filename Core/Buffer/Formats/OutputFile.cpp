// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/OutputFile.h"

#include "Core/Common/Raise.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace BufferApi::Formats
{

OutputFile::OutputFile(const QString& path)
    : m_path(path),
      m_descriptor(open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666))
{
    if (m_descriptor < 0) {
        refuseBySystem();
    }
}

OutputFile::~OutputFile()
{
    if (m_descriptor >= 0) {
        ::close(m_descriptor);
    }
}

void OutputFile::append(const void* source, unsigned long long bytes)
{
    overwrite(m_size, source, bytes);
    m_size += bytes;
}

void OutputFile::overwrite(unsigned long long offset, const void* source, unsigned long long bytes)
{
    const auto* next = static_cast<const char*>(source);
    while (bytes > 0) {
        const ssize_t count = pwrite(m_descriptor, next, bytes, static_cast<off_t>(offset));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            refuseBySystem();
        }
        next += count;
        offset += static_cast<unsigned long long>(count);
        bytes -= static_cast<unsigned long long>(count);
    }
}

void OutputFile::close()
{
    // Some network file systems report only now that the disk is full.
    const int result = ::close(m_descriptor);
    m_descriptor = -1;
    if (result != 0 && errno != EINTR) {
        refuseBySystem();
    }
}

void OutputFile::refuse(const QString& reason, RTE::SourceLocation location) const
{
    RTE::raise(RTE::FileWriteError(QStringLiteral("Cannot write '%1': %2").arg(m_path, reason)), location);
}

void OutputFile::refuseBySystem(RTE::SourceLocation location) const
{
    refuse(qt_error_string(errno), location);
}

} // namespace BufferApi::Formats
