// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/SourceLocation.h"

#include <QByteArray>
#include <QString>

#include <ctime>

namespace BufferApi::Formats
{

/// So many bytes from the beginning of a file tell its format.
inline constexpr unsigned long long headBytes = 4096;

/// A regular file opened for reading at any place; several threads may read at once.
///
/// It stays readable when its name is replaced or removed. When its content is changed reads are refused, as
/// what they give would not belong to what was read before; it may grow, as a recording does.
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

    /// \throws RTE::FileReadError with path and reason, also when the file ends before or was changed
    void read(unsigned long long offset, void* destination, unsigned long long bytes) const;
    /// The same without an exception. \returns the reason of a failure, null otherwise
    [[nodiscard]] QString tryRead(unsigned long long offset, void* destination,
                                  unsigned long long bytes) const;
    /// The same in parts, without asking each time whether the file was changed: `checkUnchanged` has to
    /// follow the last.
    void readPart(unsigned long long offset, void* destination, unsigned long long bytes) const;
    /// \throws RTE::FileReadError when the file was changed since it was opened
    void checkUnchanged() const;
    /// Up to this many bytes from the offset on, fewer at the end of the file.
    [[nodiscard]] QByteArray readUpTo(unsigned long long offset, unsigned long long bytes) const;
    /// Raises RTE::FileReadError with path and reason for content that cannot be taken.
    [[noreturn]] void refuse(const QString& reason,
                             RTE::SourceLocation location = RTE::SourceLocation::current()) const;

private:
    [[nodiscard]] QString tryReadPart(unsigned long long offset, void* destination,
                                      unsigned long long bytes) const;
    [[nodiscard]] bool isChanged() const;

    QString m_path;
    int m_descriptor = -1;
    unsigned long long m_size = 0;
    timespec m_modified{};
};

} // namespace BufferApi::Formats
