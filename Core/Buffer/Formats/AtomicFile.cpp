// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/AtomicFile.h"

#include "Core/Common/Raise.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <unistd.h>

namespace BufferApi::Formats
{

namespace
{

constexpr mode_t permissionBits = 07777;
// Whose owner could not be kept does not act in his name.
constexpr mode_t permissionBitsOfOthers = 0777;
constexpr mode_t permissionsOfNewFiles = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
// As many as the system itself follows.
constexpr int mostLinks = 40;

[[noreturn]] void fail(const QString& path, const QString& reason,
                       RTE::SourceLocation location = RTE::SourceLocation::current())
{
    RTE::raise(RTE::FileWriteError(QStringLiteral("Cannot write '%1': %2").arg(path, reason)), location);
}

/// The failure of the latest system call.
[[noreturn]] void failBySystem(const QString& path, int error = errno,
                               RTE::SourceLocation location = RTE::SourceLocation::current())
{
    fail(path, qt_error_string(error), location);
}

/// Where the bytes go: through links to what they point to, whether it is there or not.
QString resolved(const QString& target)
{
    QString path = target;
    for (int links = 0; links < mostLinks; ++links) {
        const QFileInfo info(path);
        if (!info.isSymLink()) {
            return path;
        }
        const QString canonical = info.canonicalFilePath();
        path = canonical.isEmpty() ? info.symLinkTarget() : canonical;
    }
    failBySystem(target, ELOOP);
}

/// A name beside the target, of a length that the system allows.
QString temporaryName(const QString& target, int attempt)
{
    const QString suffix = QStringLiteral(".%1-%2.part").arg(getpid()).arg(attempt);
    const qsizetype name = target.lastIndexOf(QLatin1Char('/')) + 1;
    QString base = target;
    while (base.size() > name && QFile::encodeName(base.mid(name)).size() + suffix.size() > NAME_MAX) {
        base.chop(1);
    }
    return base + suffix;
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

} // namespace

AtomicFile::AtomicFile(const QString& target) : m_name(target)
{
    if (target.isEmpty() || target.contains(QChar(0))) {
        fail(m_name, QStringLiteral("it is not a name of a file"));
    }
    m_target = resolved(target);
    checkTarget();
    createTemporary();
}

/// Finds out at once what would hinder the renaming after a long export.
void AtomicFile::checkTarget()
{
    const QByteArray path = QFile::encodeName(m_target);
    struct stat status = {};
    if (stat(path.constData(), &status) != 0) {
        return errno == ENOENT ? void() : failBySystem(m_name);
    }
    if (!S_ISREG(status.st_mode)) {
        fail(m_name, QStringLiteral("it is not a file"));
    }
    if (faccessat(AT_FDCWD, path.constData(), W_OK, AT_EACCESS) != 0) {
        failBySystem(m_name);
    }
    m_replaced = status;
}

void AtomicFile::createTemporary()
{
    const mode_t mode = m_replaced ? S_IRUSR | S_IWUSR : permissionsOfNewFiles;
    int descriptor = -1;
    for (int attempt = 0; descriptor < 0; ++attempt) {
        m_temporary = temporaryName(m_target, attempt);
        descriptor =
            open(QFile::encodeName(m_temporary).constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (descriptor < 0 && errno != EEXIST) {
            failBySystem(m_name);
        }
    }
    close(descriptor);
}

AtomicFile::~AtomicFile()
{
    if (!m_isCommitted) {
        QFile::remove(m_temporary);
    }
}

void AtomicFile::commit()
{
    if (m_isCommitted) {
        if (!sync(m_target)) {
            failBySystem(m_name);
        }
        return;
    }
    const QByteArray from = QFile::encodeName(m_temporary);
    const QByteArray to = QFile::encodeName(m_target);
    if (!sync(m_temporary)) {
        failBySystem(m_name);
    }
    if (m_replaced) {
        // Where that is refused, as on some network file systems, the file is still a good one.
        const bool hasOwner = chown(from.constData(), m_replaced->st_uid, m_replaced->st_gid) == 0;
        const mode_t kept = hasOwner ? permissionBits : permissionBitsOfOthers;
        static_cast<void>(chmod(from.constData(), m_replaced->st_mode & kept) == 0);
    }
    if (rename(from.constData(), to.constData()) != 0) {
        failBySystem(m_name);
    }
    m_isCommitted = true;
    // The new name is on the disk once its directory is; without that the old file is found after a crash.
    sync(QFileInfo(m_target).absolutePath());
}

void AtomicFile::discard()
{
    QFile::remove(m_isCommitted ? m_target : m_temporary);
}

} // namespace BufferApi::Formats
