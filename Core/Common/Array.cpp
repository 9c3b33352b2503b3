// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/Array.h"

#include <cstdint>
#include <sys/mman.h>
#include <unistd.h>

namespace RTE
{

namespace
{

/// Advises on the whole units of memory inside an array.
void advise(void* data, unsigned long long bytes, std::uintptr_t unit, int advice) noexcept
{
    const auto first = reinterpret_cast<std::uintptr_t>(data);
    const std::uintptr_t begin = (first + unit - 1) & ~(unit - 1);
    const std::uintptr_t end = (first + bytes) & ~(unit - 1);
    if (begin < end) {
        // Advice only: a kernel that does not know it refuses, and the array works as it is.
        static_cast<void>(madvise(reinterpret_cast<void*>(begin), end - begin, advice));
    }
}

} // namespace

void adviseHugePages(void* data, unsigned long long bytes) noexcept
{
    constexpr std::uintptr_t hugePage = 2U << 20U;
    constexpr unsigned long long worthwhile = 2 * hugePage;
    if (bytes >= worthwhile) {
        advise(data, bytes, hugePage, MADV_HUGEPAGE);
    }
}

void populatePages([[maybe_unused]] void* data, [[maybe_unused]] unsigned long long bytes) noexcept
{
#ifdef MADV_POPULATE_WRITE
    advise(data, bytes, static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE)), MADV_POPULATE_WRITE);
#endif
}

} // namespace RTE
