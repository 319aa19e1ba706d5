#pragma once

#include <cstddef>
#include <cstdint>

/// Counts the calling thread's allocations while it is in scope: `malloc`, `calloc`, `realloc` and everything
/// built on them, in the program and its libraries. One counter per thread at a time.
class AllocationCounter {
public:
    AllocationCounter();
    AllocationCounter(const AllocationCounter&) = delete;
    AllocationCounter& operator=(const AllocationCounter&) = delete;
    ~AllocationCounter();

    std::size_t count() const;
    /// The largest allocation in bytes; 0 without one.
    std::size_t largest() const;
};

/// Lets allocations of the calling thread fail while it is in scope, as where memory runs out: `malloc`,
/// `calloc` and `realloc` return null, `new` throws std::bad_alloc. One at a time per thread.
class AllocationFailure {
public:
    /// `count` allocations succeed, and all later ones fail.
    static AllocationFailure after(std::size_t count) { return {count, SIZE_MAX}; }
    /// Every allocation of more than `size` bytes fails.
    static AllocationFailure ofMoreThan(std::size_t size) { return {SIZE_MAX, size}; }

    /// Whether this build can do so: a sanitizer's allocator cannot be made to fail.
    static bool isAvailable();

    AllocationFailure(const AllocationFailure&) = delete;
    AllocationFailure& operator=(const AllocationFailure&) = delete;
    ~AllocationFailure();

    /// Whether an allocation has failed.
    bool hasHappened() const;

private:
    AllocationFailure(std::size_t count, std::size_t size);
};
