// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Export.h"

#include <cstddef>
#include <limits>
#include <memory>
#include <type_traits>

namespace RTE
{

/// Asks the system for huge pages on the interior of a large fresh array; does nothing for a small one.
///
/// The page faults of a fresh array cost more than any pass over its pixels.
DATAOBJECTS_COMMON_EXPORT void adviseHugePages(void* data, unsigned long long bytes) noexcept;

/// Takes the pages of a fresh array from the system at once, which is faster than fault by fault where they
/// are then written past the cache; does nothing where the system cannot.
DATAOBJECTS_COMMON_EXPORT void populatePages(void* data, unsigned long long bytes) noexcept;

/// The one allocator of pixels, masks and planes: `new T[count]`, left uninitialised, freed with `delete[]`.
///
/// Arrays change hands between objects and the frame store, which is why all of them come from here.
/// \throws std::bad_alloc, also when the size in bytes overflows
template <typename T>
[[nodiscard]] T* newArray(unsigned long long count)
{
    static_assert(std::is_trivial_v<T>);
    if (count > std::numeric_limits<std::ptrdiff_t>::max() / sizeof(T)) {
        // Fails before it asks for memory. `new` refuses such a count by itself unless T has one byte; that
        // request would reach the heap, and a sanitizer ends the process there.
        return std::allocator<T>().allocate(count);
    }
    T* data = new T[count];
    adviseHugePages(data, count * sizeof(T));
    return data;
}

} // namespace RTE
