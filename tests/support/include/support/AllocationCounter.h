#pragma once

#include <cstddef>

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
