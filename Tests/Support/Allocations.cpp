// SPDX-License-Identifier: Apache-2.0
#include "Tests/Support/Allocations.h"

namespace
{

thread_local std::size_t t_allocations = 0;

} // namespace

std::size_t TestSupport::allocations() noexcept
{
    return t_allocations;
}

#ifdef DATAOBJECTS_SANITIZED

// Of the sanitizers' run-time library; g++ installs no header for it.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*onMalloc)(const volatile void*, std::size_t),
                                                         void (*onFree)(const volatile void*));

namespace
{

void countAllocation(const volatile void* /*block*/, std::size_t /*size*/)
{
    ++t_allocations;
}

void ignoreRelease(const volatile void* /*block*/) {}

[[maybe_unused]] const int hooked = __sanitizer_install_malloc_and_free_hooks(countAllocation, ignoreRelease);

} // namespace

#else

// The executable's functions take precedence over the C library's, for the shared libraries too.
extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);

__attribute__((visibility("default"))) void* malloc(std::size_t size)
{
    ++t_allocations;
    return __libc_malloc(size);
}

__attribute__((visibility("default"))) void* calloc(std::size_t count, std::size_t size)
{
    ++t_allocations;
    return __libc_calloc(count, size);
}

__attribute__((visibility("default"))) void* realloc(void* block, std::size_t size)
{
    ++t_allocations;
    return __libc_realloc(block, size);
}
}

#endif
