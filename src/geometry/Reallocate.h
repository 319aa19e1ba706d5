#pragma once

#include <cstdlib>
#include <new>

/// Resizes an array from `malloc`, or null, to `count` > 0 values. Throws std::bad_alloc if there is no
/// memory, and leaves the array unchanged.
template <class T> void reallocate(T*& array, unsigned long count)
{
    void* const grown = count <= SIZE_MAX / sizeof(T) ? std::realloc(array, count * sizeof(T)) : nullptr;
    if (!grown)
        throw std::bad_alloc();
    array = static_cast<T*>(grown);
}
