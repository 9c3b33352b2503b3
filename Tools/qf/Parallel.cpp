// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/Parallel.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace Qf
{

void forEachInParallel(std::size_t count, unsigned int jobs, const std::function<void(std::size_t)>& task)
{
    std::atomic<std::size_t> next = 0;
    std::mutex mutex;
    std::exception_ptr failure;
    const auto work = [&] {
        for (std::size_t index = next++; index < count; index = next++) {
            try {
                task(index);
            } catch (...) {
                const std::lock_guard lock(mutex);
                failure = failure ? failure : std::current_exception();
                next = count;
            }
        }
    };
    std::vector<std::thread> threads;
    for (std::size_t i = 1; i < std::min<std::size_t>(jobs, count); ++i) {
        threads.emplace_back(work);
    }
    work();
    for (std::thread& thread : threads) {
        thread.join();
    }
    if (failure) {
        std::rethrow_exception(failure);
    }
}

unsigned int defaultJobs()
{
    return std::clamp(std::thread::hardware_concurrency(), 1U, 8U);
}

} // namespace Qf
