// SPDX-License-Identifier: Apache-2.0
/// \file
/// How passes over large planes meet the memory.
#pragma once

#include "Core/Common/CacheSize.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace DataObjects::Private
{

inline constexpr std::size_t cacheLine = 64;

/// Pixels before the first one at the start of a cache line, at most `count`. Vectors are whole parts of a
/// line, so that from there on none of them lies across two.
template <typename T>
[[nodiscard]] std::size_t pixelsBeforeLine(const T* pixels, std::size_t count) noexcept
{
    const std::size_t beyond = reinterpret_cast<std::uintptr_t>(pixels) % cacheLine;
    return std::min(count, (cacheLine - beyond) % cacheLine / sizeof(T));
}

/// Asks for what a pass will read one page later: by itself the processor stops at the end of each page.
template <typename T>
void prefetchAhead(const T* pixels) noexcept
{
    constexpr std::size_t bytesAhead = 4096;
    __builtin_prefetch(pixels + bytesAhead / sizeof(T));
}

/// The same for all lines of a step of a pass.
template <typename T>
void prefetchAhead(const T* pixels, std::size_t count) noexcept
{
    for (std::size_t i = 0; i < count; i += cacheLine / sizeof(T)) {
        prefetchAhead(pixels + i);
    }
}

/// Whether a pass that reads and writes so many bytes does better to write past the cache: what it wrote
/// first would be gone from there anyway, as half of it belongs to others.
[[nodiscard]] inline bool isWorthStreaming(std::size_t bytes) noexcept
{
    return bytes >= RTE::lastLevelCacheBytes() / 2;
}

} // namespace DataObjects::Private
