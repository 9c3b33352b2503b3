// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/Array.h"

#include <cstdint>
#include <sys/mman.h>

namespace RTE
{

void adviseHugePages(void* data, unsigned long long bytes) noexcept
{
    constexpr std::uintptr_t hugePage = 2U << 20U;
    constexpr unsigned long long worthwhile = 2 * hugePage;
    if (bytes < worthwhile) {
        return;
    }
    const auto first = reinterpret_cast<std::uintptr_t>(data);
    const std::uintptr_t begin = (first + hugePage - 1) & ~(hugePage - 1);
    const std::uintptr_t end = (first + bytes) & ~(hugePage - 1);
    if (begin < end) {
        // Advice only: a kernel without huge pages refuses, and the array works as it is.
        static_cast<void>(madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE));
    }
}

} // namespace RTE
