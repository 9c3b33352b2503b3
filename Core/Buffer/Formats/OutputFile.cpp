// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/OutputFile.h"

#include "Core/Common/Raise.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace BufferApi::Formats
{

OutputFile::OutputFile(const OutputPath& path)
    : m_name(path.name), m_descriptor(open(QFile::encodeName(path.path).constData(),
                                           O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666))
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
    if (!tryOverwrite(offset, source, bytes)) {
        refuseBySystem();
    }
}

bool OutputFile::tryOverwrite(unsigned long long offset, const void* source,
                              unsigned long long bytes) noexcept
{
    const auto* next = static_cast<const char*>(source);
    while (bytes > 0) {
        const ssize_t count = pwrite(m_descriptor, next, bytes, static_cast<off_t>(offset));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return false;
        }
        next += count;
        offset += static_cast<unsigned long long>(count);
        bytes -= static_cast<unsigned long long>(count);
    }
    return true;
}

bool OutputFile::tryRead(unsigned long long offset, void* destination,
                         unsigned long long bytes) const noexcept
{
    auto* next = static_cast<char*>(destination);
    while (bytes > 0) {
        const ssize_t count = pread(m_descriptor, next, bytes, static_cast<off_t>(offset));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return false;
        }
        if (count == 0) {
            std::memset(next, 0, bytes);
            break;
        }
        next += count;
        offset += static_cast<unsigned long long>(count);
        bytes -= static_cast<unsigned long long>(count);
    }
    return true;
}

bool OutputFile::tryResize(unsigned long long bytes) noexcept
{
    return ftruncate(m_descriptor, static_cast<off_t>(bytes)) == 0;
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
    RTE::raise(RTE::FileWriteError(QStringLiteral("Cannot write '%1': %2").arg(m_name, reason)), location);
}

void OutputFile::refuseBySystem(RTE::SourceLocation location) const
{
    refuse(qt_error_string(errno), location);
}

} // namespace BufferApi::Formats
