#pragma once

#include <cstdlib>
#include <new>

/// An array from `malloc`, or null, made `count` > 0 values long. Throws where there is no memory, the array
/// staying what it was.
template <class T> void reallocate(T*& array, unsigned long count)
{
    void* const grown = count <= SIZE_MAX / sizeof(T) ? std::realloc(array, count * sizeof(T)) : nullptr;
    if (!grown)
        throw std::bad_alloc();
    array = static_cast<T*>(grown);
}
