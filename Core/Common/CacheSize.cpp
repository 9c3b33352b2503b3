// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/CacheSize.h"

#include <unistd.h>

namespace RTE
{

unsigned long long lastLevelCacheBytes() noexcept
{
    static const unsigned long long size = [] {
        const long told = sysconf(_SC_LEVEL3_CACHE_SIZE);
        return told > 0 ? static_cast<unsigned long long>(told) : 32ULL << 20U;
    }();
    return size;
}

} // namespace RTE
