// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/SourceLocation.h"

#include <QString>

namespace BufferApi::Formats
{

/// A file that is written from its beginning on; failures raise RTE::FileWriteError with path and reason.
class OutputFile
{
public:
    /// Makes the file, or empties the one that is there.
    explicit OutputFile(const QString& path);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile();

    /// Bytes that were appended.
    [[nodiscard]] unsigned long long size() const noexcept { return m_size; }

    void append(const void* source, unsigned long long bytes);
    /// Replaces bytes that were appended before.
    void overwrite(unsigned long long offset, const void* source, unsigned long long bytes);
    /// Nothing can be written afterwards.
    void close();
    /// Raises RTE::FileWriteError with path and reason.
    [[noreturn]] void refuse(const QString& reason,
                             RTE::SourceLocation location = RTE::SourceLocation::current()) const;

private:
    [[noreturn]] void refuseBySystem(RTE::SourceLocation location = RTE::SourceLocation::current()) const;

    QString m_path;
    int m_descriptor;
    unsigned long long m_size = 0;
};

} // namespace BufferApi::Formats
