#include "imaging/ResultMemory.h"

#include <mutex>
#include <utility>

namespace {

constexpr std::size_t kLargest = std::size_t{1} << 26;

/// The cached block. Images may be released while the process ends, so it is never destroyed.
struct Cache {
    std::mutex mutex;
    MallocMemory<std::uint8_t> bytes;
    std::size_t size = 0;
};

Cache& cache()
{
    static Cache* const instance = new Cache;
    return *instance;
}

} // namespace

MallocMemory<std::uint8_t> takeResultMemory(std::size_t size)
{
    if (isLarge(size)) {
        Cache& cached = cache();
        const std::lock_guard lock(cached.mutex);
        if (inHugePages(cached.size) == inHugePages(size)) {
            cached.size = 0;
            return std::move(cached.bytes);
        }
    }
    return makeLargeBytes(size);
}

void returnResultMemory(void* memory, std::size_t size)
{
    MallocMemory<std::uint8_t> bytes(static_cast<std::uint8_t*>(memory));
    if (!isLarge(size) || size > kLargest)
        return;
    // From now on the system may take the pages, until they are written to.
    if (madvise(memory, inHugePages(size), MADV_FREE) != 0)
        return;
    Cache& cached = cache();
    const std::lock_guard lock(cached.mutex);
    std::swap(cached.bytes, bytes);
    cached.size = size;
}
