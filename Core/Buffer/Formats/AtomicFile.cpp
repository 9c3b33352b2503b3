// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/AtomicFile.h"

#include "Core/Common/Raise.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace BufferApi::Formats
{

namespace
{

[[noreturn]] void fail(const QString& path, const QString& reason,
                       RTE::SourceLocation location = RTE::SourceLocation::current())
{
    RTE::raise(RTE::FileWriteError(QStringLiteral("Cannot write '%1': %2").arg(path, reason)), location);
}

/// The failure of the latest system call.
[[noreturn]] void failBySystem(const QString& path,
                               RTE::SourceLocation location = RTE::SourceLocation::current())
{
    fail(path, qt_error_string(errno), location);
}

/// Where the bytes go: through links to what they point to.
QString resolved(const QString& target)
{
    const QFileInfo info(target);
    const QString canonical = info.isSymLink() ? info.canonicalFilePath() : QString();
    return canonical.isEmpty() ? target : canonical;
}

/// Syncs a file or a directory. \returns false with errno set
bool sync(const QString& path)
{
    const int descriptor = open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        return false;
    }
    const bool isSynced = fsync(descriptor) == 0;
    const int error = errno;
    close(descriptor);
    errno = error;
    return isSynced;
}

/// Who may do what with the file is as with the one that it replaces, or as the process makes its files.
mode_t wantedMode(const QString& target)
{
    struct stat status = {};
    if (stat(QFile::encodeName(target).constData(), &status) == 0) {
        return status.st_mode & 07777U;
    }
    return S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
}

} // namespace

AtomicFile::AtomicFile(const QString& target) : m_target(resolved(target))
{
    const QFileInfo info(m_target);
    if (info.exists() && !info.isFile()) {
        fail(m_target, QStringLiteral("it is not a file"));
    }
    const bool isReplaced = info.exists();
    for (int attempt = 0;; ++attempt) {
        m_temporary = QStringLiteral("%1.%2-%3.part").arg(m_target).arg(getpid()).arg(attempt);
        const int descriptor = open(QFile::encodeName(m_temporary).constData(),
                                    O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, wantedMode(m_target));
        if (descriptor >= 0) {
            // Where that is refused, as on some network file systems, the file is still a good one.
            static_cast<void>(isReplaced && fchmod(descriptor, wantedMode(m_target)) == 0);
            close(descriptor);
            return;
        }
        if (errno != EEXIST) {
            failBySystem(m_target);
        }
    }
}

AtomicFile::~AtomicFile()
{
    if (!m_isCommitted) {
        QFile::remove(m_temporary);
    }
}

void AtomicFile::commit()
{
    const QByteArray from = QFile::encodeName(m_temporary);
    const QByteArray to = QFile::encodeName(m_target);
    if (!sync(m_temporary) || rename(from.constData(), to.constData()) != 0) {
        failBySystem(m_target);
    }
    m_isCommitted = true;
    // The new name is on the disk once its directory is; without that the old file is found after a crash.
    sync(QFileInfo(m_target).absolutePath());
}

} // namespace BufferApi::Formats
