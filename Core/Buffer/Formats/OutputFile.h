// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/SourceLocation.h"

#include <QString>

namespace BufferApi::Formats
{

/// Where a file is written. A path by itself is its own name.
struct OutputPath
{
    // Implicit, since only a file that gets its name later has two.
    OutputPath(const QString& file) : path(file), name(file) {}
    OutputPath(const QString& file, const QString& shown) : path(file), name(shown) {}

    QString path;
    /// What errors call the file.
    QString name;
};

/// A file that is written from its beginning on; failures raise RTE::FileWriteError with name and reason.
class OutputFile
{
public:
    /// Makes the file, or empties the one that is there.
    explicit OutputFile(const OutputPath& path);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile();

    /// Bytes that were appended.
    [[nodiscard]] unsigned long long size() const noexcept { return m_size; }

    void append(const void* source, unsigned long long bytes);
    /// Replaces bytes that were appended before.
    void overwrite(unsigned long long offset, const void* source, unsigned long long bytes);
    /// As `overwrite`, also beyond the end. \returns false when it failed, with the reason in `errno`
    [[nodiscard]] bool tryOverwrite(unsigned long long offset, const void* source,
                                    unsigned long long bytes) noexcept;
    /// Reads back what was written; beyond the end there are zeros. \returns as `tryOverwrite`
    [[nodiscard]] bool tryRead(unsigned long long offset, void* destination,
                               unsigned long long bytes) const noexcept;
    /// Cuts the file off, or lengthens it by zeros. \returns as `tryOverwrite`
    [[nodiscard]] bool tryResize(unsigned long long bytes) noexcept;
    /// Nothing can be written afterwards.
    void close();
    /// Raises RTE::FileWriteError with name and reason.
    [[noreturn]] void refuse(const QString& reason,
                             RTE::SourceLocation location = RTE::SourceLocation::current()) const;

private:
    [[noreturn]] void refuseBySystem(RTE::SourceLocation location = RTE::SourceLocation::current()) const;

    QString m_name;
    int m_descriptor;
    unsigned long long m_size = 0;
};

} // namespace BufferApi::Formats
