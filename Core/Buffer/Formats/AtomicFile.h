// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

namespace BufferApi::Formats
{

/// A new file that gets its name only once it is whole: until then it has a temporary name beside the target.
class AtomicFile
{
public:
    /// Makes the empty temporary file. A target that is a link stays one: what it points to is replaced.
    /// \throws RTE::FileWriteError
    explicit AtomicFile(const QString& target);
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;
    /// Removes the temporary file unless it was committed.
    ~AtomicFile();

    [[nodiscard]] const QString& temporaryPath() const noexcept { return m_temporary; }
    /// Brings the bytes to the disk and gives the file its name in place of the one that has it.
    /// \throws RTE::FileWriteError
    void commit();

private:
    QString m_target;
    QString m_temporary;
    bool m_isCommitted = false;
};

} // namespace BufferApi::Formats
