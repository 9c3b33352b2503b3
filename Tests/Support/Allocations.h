// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <utility>

namespace TestSupport
{

/// Blocks that this thread took from the heap so far, by malloc or by new.
[[nodiscard]] std::size_t allocations() noexcept;

/// Bytes of the largest block that this thread asked for since `forgetLargestAllocation`.
[[nodiscard]] std::size_t largestAllocation() noexcept;
void forgetLargestAllocation() noexcept;

/// The blocks that a call takes from the heap.
template <typename Call>
[[nodiscard]] std::size_t allocationsDuring(Call&& call)
{
    const std::size_t before = allocations();
    std::forward<Call>(call)();
    return allocations() - before;
}

} // namespace TestSupport
