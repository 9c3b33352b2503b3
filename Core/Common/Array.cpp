// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/Array.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <sys/mman.h>
#include <unistd.h>

namespace RTE
{

namespace
{

/// The whole units of memory inside an array.
struct Interior
{
    std::uintptr_t begin;
    std::uintptr_t end;

    Interior(const void* data, unsigned long long bytes, std::uintptr_t unit) noexcept
        : begin((reinterpret_cast<std::uintptr_t>(data) + unit - 1) & ~(unit - 1)),
          end((reinterpret_cast<std::uintptr_t>(data) + bytes) & ~(unit - 1))
    {
    }
};

void advise(const Interior& interior, int advice) noexcept
{
    if (interior.begin < interior.end) {
        // Advice only: a kernel that does not know it refuses, and the array works as it is.
        static_cast<void>(
            madvise(reinterpret_cast<void*>(interior.begin), interior.end - interior.begin, advice));
    }
}

std::uintptr_t pageBytes() noexcept
{
    static const auto bytes = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    return bytes;
}

constexpr std::uintptr_t hugePage = 2U << 20U;

// A sanitizer is to see each array freed.
#ifdef __SANITIZE_ADDRESS__
constexpr bool keepsArrays = false;
#else
constexpr bool keepsArrays = true;
#endif

/// Stands at the beginning of a kept array.
struct Kept
{
    unsigned long long bytes;
};

// A thread owns what it has taken out of a place, so nobody else reads or frees it.
std::array<std::atomic<Kept*>, 4> places{};
std::atomic<unsigned int> nextPlace{0};

bool putInto(std::atomic<Kept*>& place, Kept* kept) noexcept
{
    Kept* none = nullptr;
    return place.compare_exchange_strong(none, kept);
}

void freeKept(Kept* kept) noexcept
{
    ::operator delete[](static_cast<void*>(kept));
}

/// Puts an array into a free place or, if there is none, frees the one that stands where its turn is.
void put(Kept* kept) noexcept
{
    for (auto& place : places) {
        if (putInto(place, kept)) {
            return;
        }
    }
    freeKept(places[nextPlace++ % places.size()].exchange(kept));
}

bool isWorthKeeping(unsigned long long bytes) noexcept
{
    constexpr unsigned long long smallest = 16U << 20U;
    constexpr unsigned long long largest = 256U << 20U;
    return keepsArrays && bytes >= smallest && bytes <= largest;
}

} // namespace

void adviseHugePages(void* data, unsigned long long bytes) noexcept
{
    constexpr unsigned long long worthwhile = 2 * hugePage;
    if (bytes >= worthwhile) {
        advise(Interior(data, bytes, hugePage), MADV_HUGEPAGE);
    }
}

bool lacksPages(const void* data, unsigned long long bytes) noexcept
{
    const Interior pages(data, bytes, pageBytes());
    unsigned char state = 0;
    return pages.begin < pages.end &&
           mincore(reinterpret_cast<void*>(pages.end - pageBytes()), pageBytes(), &state) == 0 &&
           (state & 1U) == 0;
}

void populatePages([[maybe_unused]] void* data, [[maybe_unused]] unsigned long long bytes) noexcept
{
#ifdef MADV_POPULATE_WRITE
    advise(Interior(data, bytes, pageBytes()), MADV_POPULATE_WRITE);
#endif
}

void* takeReserve(unsigned long long bytes) noexcept
{
    if (!isWorthKeeping(bytes)) {
        return nullptr;
    }
    for (auto& place : places) {
        Kept* const kept = place.exchange(nullptr);
        if (kept != nullptr && kept->bytes == bytes) {
            return kept;
        }
        if (kept != nullptr) {
            put(kept);
        }
    }
    return nullptr;
}

bool keepInReserve(void* data, unsigned long long bytes) noexcept
{
    if (data == nullptr || !isWorthKeeping(bytes)) {
        return false;
    }
    auto* const kept = new (data) Kept{bytes};
#ifdef MADV_FREE
    advise(Interior(kept + 1, bytes - sizeof(Kept), hugePage), MADV_FREE);
#endif
    put(kept);
    return true;
}

void freeReserve() noexcept
{
    for (auto& place : places) {
        freeKept(place.exchange(nullptr));
    }
}

} // namespace RTE
