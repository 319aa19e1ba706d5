#pragma once

#include <concepts>
#include <cstdint>
#include <cstring>

/// A run of coverage bytes that are all 0, all 255, or mixed.
struct CoverageRun {
    enum class Kind : std::uint8_t { None, Full, Mixed };

    Kind kind;
    int count;
};

/// The run that begins here, of at most `limit` bytes. Looks at eight bytes together, so mixed runs may
/// contain short ones of the other kinds.
inline CoverageRun coverageRunAt(const unsigned char* coverage, int limit)
{
    using Kind = CoverageRun::Kind;
    constexpr int kBlock = 8;
    constexpr std::uint64_t kNone = 0;
    const auto blockAt = [coverage](int index) {
        std::uint64_t block;
        static_assert(sizeof block == kBlock);
        std::memcpy(&block, coverage + index, sizeof block);
        return block;
    };
    const auto isAlike = [](std::uint64_t block) { return block == kNone || block == ~kNone; };

    if (limit < kBlock)
        return {Kind::Mixed, limit};
    const std::uint64_t block = blockAt(0);
    int count = kBlock;
    if (isAlike(block)) {
        while (count + kBlock <= limit && blockAt(count) == block)
            count += kBlock;
        return {block == kNone ? Kind::None : Kind::Full, count};
    }
    while (count + kBlock <= limit && !isAlike(blockAt(count)))
        count += kBlock;
    return {Kind::Mixed, limit - count < kBlock ? limit : count};
}

/// Calls `paint(index, count, coverage)` for the runs of a row that are covered; coverage is null in those
/// that are fully covered.
template <std::invocable<int, int, const unsigned char*> Paint>
void forEachRun(const unsigned char* coverage, int width, Paint paint)
{
    for (int x = 0; x < width;) {
        const CoverageRun run = coverageRunAt(coverage + x, width - x);
        if (run.kind != CoverageRun::Kind::None)
            paint(x, run.count, run.kind == CoverageRun::Kind::Full ? nullptr : coverage + x);
        x += run.count;
    }
}
