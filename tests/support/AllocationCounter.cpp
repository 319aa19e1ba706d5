#include "support/AllocationCounter.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>

namespace {

thread_local bool isCounting = false;
thread_local std::size_t allocations = 0;
thread_local std::size_t largestSize = 0;

thread_local bool isFailing = false;
thread_local std::size_t succeedingCount = 0; // still to come
thread_local std::size_t failingSize = 0;
thread_local bool hasFailed = false;

void allocated(std::size_t size)
{
    if (!isCounting)
        return;
    ++allocations;
    largestSize = std::max(largestSize, size);
}

/// Whether the allocation at hand is to fail.
[[maybe_unused]] bool fails(std::size_t size)
{
    if (!isFailing)
        return false;
    if (succeedingCount > 0 && size <= failingSize) {
        --succeedingCount;
        return false;
    }
    hasFailed = true;
    errno = ENOMEM;
    return true;
}

} // namespace

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

// A sanitizer replaces the allocator and reports each call through hooks. g++ does not ship their header.
extern "C" int __sanitizer_install_malloc_and_free_hooks(
    void (*mallocHook)(const volatile void*, size_t), void (*freeHook)(const volatile void*));

namespace {

[[maybe_unused]] const int isInstalled = __sanitizer_install_malloc_and_free_hooks(
    [](const volatile void*, size_t size) { allocated(size); }, [](const volatile void*) {});

} // namespace

bool AllocationFailure::isAvailable()
{
    return false;
}

#else

// Definitions in the program replace those of the C library, for every library that it loads.
extern "C" {

void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);

void* malloc(size_t size) noexcept
{
    allocated(size);
    return fails(size) ? nullptr : __libc_malloc(size);
}

void* calloc(size_t count, size_t size) noexcept
{
    allocated(count * size);
    return fails(count * size) ? nullptr : __libc_calloc(count, size);
}

void* realloc(void* block, size_t size) noexcept
{
    allocated(size);
    return fails(size) ? nullptr : __libc_realloc(block, size);
}

} // extern "C"

bool AllocationFailure::isAvailable()
{
    return true;
}

#endif

AllocationCounter::AllocationCounter()
{
    allocations = 0;
    largestSize = 0;
    isCounting = true;
}

AllocationCounter::~AllocationCounter()
{
    isCounting = false;
}

std::size_t AllocationCounter::count() const
{
    return allocations;
}

std::size_t AllocationCounter::largest() const
{
    return largestSize;
}

AllocationFailure::AllocationFailure(std::size_t count, std::size_t size)
{
    succeedingCount = count;
    failingSize = size;
    hasFailed = false;
    isFailing = true;
}

AllocationFailure::~AllocationFailure()
{
    isFailing = false;
}

bool AllocationFailure::hasHappened() const
{
    return hasFailed;
}
