// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/SourceLocation.h"

#include <QByteArray>
#include <QString>

namespace BufferApi::Formats
{

/// A regular file opened for reading at any place; several threads may read at once. It stays readable when
/// its name is replaced or removed.
class InputFile
{
public:
    /// \throws RTE::FileOpenError with path and reason
    explicit InputFile(const QString& path);
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    ~InputFile();

    [[nodiscard]] QString path() const { return m_path; }
    /// In bytes, when it was opened.
    [[nodiscard]] unsigned long long size() const noexcept { return m_size; }

    /// \throws RTE::FileReadError with path and reason, also when the file ends before
    void read(unsigned long long offset, void* destination, unsigned long long bytes) const;
    /// Up to this many bytes from the offset on, fewer at the end of the file.
    [[nodiscard]] QByteArray readUpTo(unsigned long long offset, unsigned long long bytes) const;
    /// Raises RTE::FileReadError with path and reason for content that cannot be taken.
    [[noreturn]] void refuse(const QString& reason,
                             RTE::SourceLocation location = RTE::SourceLocation::current()) const;

private:
    QString m_path;
    int m_descriptor;
    unsigned long long m_size = 0;
};

} // namespace BufferApi::Formats
