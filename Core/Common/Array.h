// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Export.h"

#include <cstddef>
#include <limits>
#include <memory>
#include <new>
#include <type_traits>

namespace RTE
{

/// Asks the system for huge pages on the interior of a large fresh array; does nothing for a small one.
///
/// The page faults of a fresh array cost more than any pass over its pixels.
DATAOBJECTS_COMMON_EXPORT void adviseHugePages(void* data, unsigned long long bytes) noexcept;

/// Takes the pages inside a part of a fresh array from the system at once, which is faster than fault by
/// fault where the part is then written past the cache or filled from a file; does nothing where the system
/// cannot. Where the pages are there already it takes a fifth as long as filling them from a file: see
/// `lacksPages`.
DATAOBJECTS_COMMON_EXPORT void populatePages(void* data, unsigned long long bytes) noexcept;

/// Whether the last page inside a part of an array has still to be taken from the system.
[[nodiscard]] DATAOBJECTS_COMMON_EXPORT bool lacksPages(const void* data, unsigned long long bytes) noexcept;

/// \name Arrays in reserve
///
/// The pages of a fresh array are cleared by the system one by one, and given back when it is freed; beyond
/// 32 MiB the C library does both each time, which takes longer than decoding a frame. So a few freed arrays
/// of 16 to 256 MiB stay for the next ones of their sizes. The system may take their pages whenever it is
/// short of memory. Safe from all threads, without a lock.
/// \{

/// A kept array of exactly this size; null if there is none. It is freed as if it came from `new`.
[[nodiscard]] DATAOBJECTS_COMMON_EXPORT void* takeReserve(unsigned long long bytes) noexcept;

/// Keeps an array that came from `new` and returns true, or leaves it to the caller.
[[nodiscard]] DATAOBJECTS_COMMON_EXPORT bool keepInReserve(void* data, unsigned long long bytes) noexcept;

/// Frees all kept arrays.
DATAOBJECTS_COMMON_EXPORT void freeReserve() noexcept;
/// \}

/// The one allocator of pixels, masks and planes: `new T[count]`, left uninitialised, freed with deleteArray
/// or `delete[]`.
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
    if (void* const kept = takeReserve(count * sizeof(T))) {
        return static_cast<T*>(kept);
    }
    T* data = new (std::nothrow) T[count];
    if (data == nullptr) {
        freeReserve();
        data = new T[count];
    }
    adviseHugePages(data, count * sizeof(T));
    return data;
}

/// `delete[]` for an array of `count` elements, wherever `new` made it; a large one may be kept in reserve.
template <typename T>
void deleteArray(T* data, unsigned long long count) noexcept
{
    static_assert(std::is_trivial_v<T>);
    if (!keepInReserve(data, count * sizeof(T))) {
        delete[] data;
    }
}

} // namespace RTE
