// SPDX-License-Identifier: Apache-2.0
#include "Tests/Support/MemoryFile.h"

#include "Core/Common/Raise.h"

#include <cstdlib>
#include <unistd.h>

namespace TestSupport
{

MemoryFile::MemoryFile(QByteArrayView content)
{
    const int descriptor = mkstemp(m_path);
    const auto written = write(descriptor, content.data(), static_cast<std::size_t>(content.size()));
    close(descriptor);
    RTE::verify(written == content.size(), "Memory file cannot be written");
}

MemoryFile::~MemoryFile()
{
    unlink(m_path);
}

} // namespace TestSupport
