// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/OutputFile.h"

#include <QString>

#include <optional>
#include <sys/stat.h>

namespace BufferApi::Formats
{

/// A new file that gets its name only once it is whole: until then it has a temporary name beside the target.
/// Errors call it by the name that the caller gave.
class AtomicFile
{
public:
    /// Makes the empty temporary file. A target that is a link stays one: what it points to is made or
    /// replaced. \throws RTE::FileWriteError, also for a target that must not be written
    explicit AtomicFile(const QString& target);
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;
    /// Removes the temporary file unless it was committed.
    ~AtomicFile();

    /// Where to write.
    [[nodiscard]] OutputPath output() const { return {m_temporary, m_name}; }
    /// Brings the bytes to the disk and gives the file its name in place of the one that has it, whose
    /// permissions it takes over. When it has its name already, the bytes alone that were written since.
    /// \throws RTE::FileWriteError
    void commit();
    /// Removes the file, under whichever name it stands.
    void discard();

private:
    void checkTarget();
    void createTemporary();

    QString m_name;
    QString m_target;
    QString m_temporary;
    /// Of the file that is replaced.
    std::optional<struct stat> m_replaced;
    bool m_isCommitted = false;
};

} // namespace BufferApi::Formats
