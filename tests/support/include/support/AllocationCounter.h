#pragma once

#include <cstddef>

/// Counts what the calling thread allocates while it is in scope: `malloc`, `calloc`, `realloc` and all that
/// is built on them, in this program and in its libraries. One at a time per thread.
class AllocationCounter {
public:
    AllocationCounter();
    AllocationCounter(const AllocationCounter&) = delete;
    AllocationCounter& operator=(const AllocationCounter&) = delete;
    ~AllocationCounter();

    std::size_t count() const;
    /// Bytes of the largest of them; 0 without one.
    std::size_t largest() const;
};
