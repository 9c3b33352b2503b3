// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <functional>

namespace Qf
{

/// Calls `task` with 0 to `count` - 1, from `jobs` threads of which the caller's is one. After a failure no
/// further task begins, and the first one is raised to the caller.
void forEachInParallel(std::size_t count, unsigned int jobs, const std::function<void(std::size_t)>& task);

/// As many threads as the machine has processors, at most 8.
[[nodiscard]] unsigned int defaultJobs();

} // namespace Qf
