// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/SystemInfo.h"

#include <unistd.h>

namespace RTE
{

namespace
{

unsigned long long physicalMemory() noexcept
{
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGESIZE);
    if (pages <= 0 || pageSize <= 0) {
        return 0;
    }
    return static_cast<unsigned long long>(pages) * static_cast<unsigned long long>(pageSize);
}

} // namespace

C_SystemInfo::C_SystemInfo() noexcept : m_memoryTotal(physicalMemory() / 1024) {}

const C_SystemInfo& C_SystemInfo::GetInstance()
{
    static const C_SystemInfo instance;
    return instance;
}

} // namespace RTE
