#pragma once

#include <cstdlib>
#include <memory>

struct FreeDeleter {
    void operator()(void* memory) const { std::free(memory); }
};

/// Owns an array from `malloc`, until something takes it over that frees it with `free`.
template <class T> using MallocMemory = std::unique_ptr<T[], FreeDeleter>;
