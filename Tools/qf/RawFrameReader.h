// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Span.h"

#include <QFile>
#include <QStringList>

#include <vector>

namespace Qf
{

/// Reads encoded frames that lie one after the other in raw files; holds one frame at a time.
///
/// Pipes are read too; their length shows only at the end.
class RawFrameReader
{
public:
    /// Opens nothing yet, but looks at all files, so that a wrong one is told before any work is done.
    /// \param frameSize bytes of an encoded frame, more than 0
    /// \param frameName what such a frame is called in messages
    /// \throws RTE::FileOpenError, RTE::FileReadError for a file that is missing, empty or no whole number of
    ///         frames
    RawFrameReader(const QStringList& files, unsigned long long frameSize, const QString& frameName);

    /// Frames in all files; 0 when one of them is a pipe.
    [[nodiscard]] unsigned long long frameCount() const noexcept { return m_frameCount; }
    /// The file that the last frame came from.
    [[nodiscard]] QString fileName() const { return m_fileName; }

    /// The next frame's bytes, valid until the next call; empty at the end of the last file.
    /// \throws RTE::FileOpenError, RTE::FileReadError
    [[nodiscard]] Zt::span<const unsigned char> read();

private:
    [[nodiscard]] unsigned long long checkedFrameCount(const QString& path) const;
    void checkWhole(const QString& path, unsigned long long size) const;
    [[nodiscard]] bool openNext();
    [[nodiscard]] unsigned long long fill();

    QStringList m_files;
    unsigned long long m_frameSize;
    QString m_frameName;
    unsigned long long m_frameCount = 0;
    qsizetype m_next = 0;
    unsigned long long m_bytesOfFile = 0;
    QString m_fileName;
    QFile m_file;
    std::vector<unsigned char> m_frame;
};

} // namespace Qf
