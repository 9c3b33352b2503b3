// SPDX-License-Identifier: Apache-2.0
#include "Tests/Support/Allocations.h"

#include <algorithm>

namespace
{

thread_local std::size_t t_allocations = 0;
thread_local std::size_t t_largest = 0;
thread_local std::size_t t_untilFailure = 0;

void note(std::size_t size)
{
    ++t_allocations;
    t_largest = std::max(t_largest, size);
}

} // namespace

std::size_t TestSupport::allocations() noexcept
{
    return t_allocations;
}

std::size_t TestSupport::largestAllocation() noexcept
{
    return t_largest;
}

void TestSupport::forgetLargestAllocation() noexcept
{
    t_largest = 0;
}

void TestSupport::failAllocation(std::size_t n) noexcept
{
    t_untilFailure = n;
}

#ifdef DATAOBJECTS_SANITIZED

// Of the sanitizers' run-time library; g++ installs no header for it.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*onMalloc)(const volatile void*, std::size_t),
                                                         void (*onFree)(const volatile void*));

namespace
{

void noteAllocation(const volatile void* /*block*/, std::size_t size)
{
    note(size);
}

void ignoreRelease(const volatile void* /*block*/) {}

[[maybe_unused]] const int hooked = __sanitizer_install_malloc_and_free_hooks(noteAllocation, ignoreRelease);

} // namespace

#else

namespace
{

bool isRefused()
{
    return t_untilFailure > 0 && --t_untilFailure == 0;
}

} // namespace

// The executable's functions take precedence over the C library's, for the shared libraries too.
extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);

__attribute__((visibility("default"))) void* malloc(std::size_t size)
{
    note(size);
    return isRefused() ? nullptr : __libc_malloc(size);
}

__attribute__((visibility("default"))) void* calloc(std::size_t count, std::size_t size)
{
    note(count * size);
    return isRefused() ? nullptr : __libc_calloc(count, size);
}

__attribute__((visibility("default"))) void* realloc(void* block, std::size_t size)
{
    note(size);
    return isRefused() ? nullptr : __libc_realloc(block, size);
}
}

#endif
