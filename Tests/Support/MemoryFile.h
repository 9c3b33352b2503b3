// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArrayView>
#include <QString>

namespace TestSupport
{

/// A new file in memory, gone with this object: a disk might have to be waited for. It has a name in a file
/// system, which HDF5 asks for.
class MemoryFile
{
public:
    explicit MemoryFile(QByteArrayView content);
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile();

    [[nodiscard]] QString path() const { return QString::fromLatin1(m_path); }

private:
    char m_path[32] = "/dev/shm/dataobjects-XXXXXX";
};

} // namespace TestSupport
