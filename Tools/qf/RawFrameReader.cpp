// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/RawFrameReader.h"

#include "Tools/qf/Arguments.h"
#include "Tools/qf/Session.h"

#include "Core/Common/Raise.h"

#include <QFileInfo>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace Qf
{

namespace
{

QString lastError()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

} // namespace

RawFrameReader::RawFrameReader(const QStringList& files, unsigned long long frameSize,
                               const QString& frameName)
    : m_files(files), m_frameSize(frameSize), m_frameName(frameName)
{
    bool countable = true;
    for (const QString& path : files) {
        const unsigned long long count = checkedFrameCount(path);
        countable = countable && count > 0;
        m_frameCount += count;
    }
    m_frameCount = countable ? m_frameCount : 0;
}

unsigned long long RawFrameReader::checkedFrameCount(const QString& path) const
{
    checkInput(path);
    const QFileInfo info(path);
    if (!info.isFile()) {
        return 0;
    }
    const auto size = static_cast<unsigned long long>(info.size());
    checkWhole(path, size);
    return size / m_frameSize;
}

void RawFrameReader::checkWhole(const QString& path, unsigned long long size) const
{
    if (size == 0) {
        RTE::raise(RTE::FileReadError(
            QStringLiteral("%1: the file is empty; there is no frame to decode").arg(path)));
    }
    if (size < m_frameSize) {
        RTE::raise(RTE::FileReadError(
            QStringLiteral("%1: too short: %2 bytes, but %3 takes %4 bytes; check --size and --format")
                .arg(path)
                .arg(size)
                .arg(m_frameName)
                .arg(m_frameSize)));
    }
    if (size % m_frameSize != 0) {
        RTE::raise(RTE::FileReadError(
            QStringLiteral(
                "%1: %2 bytes are no whole number of frames: %3 takes %4 bytes, %5 bytes are left over; "
                "check --size and --format")
                .arg(path)
                .arg(size)
                .arg(m_frameName)
                .arg(m_frameSize)
                .arg(size % m_frameSize)));
    }
}

Zt::span<const unsigned char> RawFrameReader::read()
{
    m_frame.resize(m_frameSize);
    while (m_file.isOpen() || openNext()) {
        const unsigned long long size = fill();
        m_bytesOfFile += size;
        if (size == m_frameSize) {
            return {m_frame.data(), m_frame.size()};
        }
        checkWhole(m_fileName, m_bytesOfFile);
        m_file.close();
    }
    return {};
}

bool RawFrameReader::openNext()
{
    if (m_next == m_files.size()) {
        return false;
    }
    m_fileName = m_files[m_next++];
    m_bytesOfFile = 0;
    int handle = -1;
    // QFile would go on waiting for the writer of a pipe.
    while ((handle = ::open(QFile::encodeName(m_fileName).constData(), O_RDONLY | O_CLOEXEC)) < 0) {
        if (errno != EINTR) {
            RTE::raise(
                RTE::FileOpenError(QStringLiteral("%1: cannot open: %2").arg(m_fileName, lastError())));
        }
        Session::stopIfRequested();
    }
    m_file.open(handle, QIODevice::ReadOnly | QIODevice::Unbuffered, QFile::AutoCloseHandle);
    return true;
}

unsigned long long RawFrameReader::fill()
{
    unsigned long long filled = 0;
    while (filled < m_frameSize) {
        const ssize_t got = ::read(m_file.handle(), m_frame.data() + filled, m_frameSize - filled);
        if (got < 0 && errno == EINTR) {
            // QFile would go on waiting for a silent pipe.
            Session::stopIfRequested();
            continue;
        }
        if (got < 0) {
            RTE::raise(
                RTE::FileReadError(QStringLiteral("%1: cannot read: %2").arg(m_fileName, lastError())));
        }
        if (got == 0) {
            break;
        }
        filled += static_cast<unsigned long long>(got);
    }
    return filled;
}

} // namespace Qf
