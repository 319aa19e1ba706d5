#include "MemoryRecord.h"

#include <algorithm>
#include <malloc.h>

#ifdef __SANITIZE_ADDRESS__
// g++ 12 has the function and lacks its header.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace {

std::size_t median(std::vector<std::size_t> samples)
{
    const auto middle = samples.begin() + std::ptrdiff_t(samples.size() / 2);
    std::nth_element(samples.begin(), middle, samples.end());
    return *middle;
}

} // namespace

std::size_t heapInUse()
{
#ifdef __SANITIZE_ADDRESS__
    return __sanitizer_get_current_allocated_bytes();
#else
    const auto heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
#endif
}

double MemoryRecord::growth() const
{
    if (!isJudged())
        return 0;
    const std::size_t warmUp = _samples.size() / 4;
    const auto third = std::ptrdiff_t((_samples.size() - warmUp) / 3);
    const auto start = _samples.begin() + std::ptrdiff_t(warmUp);
    const std::size_t first = median({start, start + third});
    const std::size_t last = median({_samples.end() - third, _samples.end()});
    return double(last) / double(first) - 1;
}
