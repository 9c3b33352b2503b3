// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <new>
#include <utility>

namespace TestSupport
{

/// Blocks that this thread took from the heap so far, by malloc or by new.
[[nodiscard]] std::size_t allocations() noexcept;

/// Bytes of the largest block that this thread asked for since `forgetLargestAllocation`.
[[nodiscard]] std::size_t largestAllocation() noexcept;
void forgetLargestAllocation() noexcept;

/// The n-th block that this thread asks for from now on cannot be had; for 0 all can. Sanitizers have no way
/// to refuse a block: with them nothing fails.
void failAllocation(std::size_t n) noexcept;

/// False when the call fails because the n-th block that it asks for cannot be had.
template <typename Call>
[[nodiscard]] bool succeedsWithoutBlock(std::size_t n, Call&& call)
{
    failAllocation(n);
    try {
        std::forward<Call>(call)();
    } catch (const std::bad_alloc&) {
        return false;
    }
    failAllocation(0);
    return true;
}

/// The blocks that a call takes from the heap.
template <typename Call>
[[nodiscard]] std::size_t allocationsDuring(Call&& call)
{
    const std::size_t before = allocations();
    std::forward<Call>(call)();
    return allocations() - before;
}

} // namespace TestSupport
