#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <sys/mman.h>

struct FreeDeleter {
    void operator()(void* memory) const { std::free(memory); }
};

/// Owns an array from `malloc`, until something takes it over that frees it with `free`.
template <class T> using MallocMemory = std::unique_ptr<T[], FreeDeleter>;

/// `size` uninitialized bytes with the alignment of `malloc`; null if there is no memory.
inline MallocMemory<std::uint8_t> makeBytes(std::size_t size)
{
    return MallocMemory<std::uint8_t>(static_cast<std::uint8_t*>(std::malloc(size)));
}

inline constexpr std::size_t kHugePage = std::size_t{1} << 21;

/// Whether memory for so many bytes should come in huge pages.
inline bool isLarge(std::size_t size)
{
    return size >= 4 * kHugePage;
}

/// The size of the huge pages that hold so many bytes.
inline std::size_t inHugePages(std::size_t size)
{
    return (size + kHugePage - 1) / kHugePage * kHugePage;
}

/// The same for pixels, which may be many. Asks for huge pages then, because page faults of normal ones take
/// longer than computing the pixels.
inline MallocMemory<std::uint8_t> makeLargeBytes(std::size_t size)
{
    if (!isLarge(size))
        return makeBytes(size);
    const std::size_t wholePages = inHugePages(size);
    MallocMemory<std::uint8_t> bytes(static_cast<std::uint8_t*>(std::aligned_alloc(kHugePage, wholePages)));
    if (bytes)
        madvise(bytes.get(), wholePages, MADV_HUGEPAGE); // only a hint: failure does no harm
    return bytes;
}
