#pragma once

#include "imaging/MallocMemory.h"

/// `size` uninitialized bytes for the pixels of an image; null if there is no memory.
///
/// Large ones may be those of an image that was released before: that saves the time in which the system
/// clears new pages, which is as long as computing the pixels. One block of up to 64 MiB is cached. While it
/// is, the system may take its pages whenever it is short of memory. Any thread.
MallocMemory<std::uint8_t> takeResultMemory(std::size_t size);

/// Frees or caches what `takeResultMemory` returned for `size` bytes. Any thread.
void returnResultMemory(void* memory, std::size_t size);
