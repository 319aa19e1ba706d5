#pragma once

#include <cstddef>
#include <vector>

/// The bytes that are allocated on the heap now, mapped blocks included.
std::size_t heapInUse();

/// How memory develops: its size at moments that are alike.
class MemoryRecord {
public:
    void add(std::size_t bytes) { _samples.push_back(bytes); }
    const std::vector<std::size_t>& samples() const { return _samples; }

    /// Whether there are enough samples to compare.
    bool isJudged() const { return _samples.size() >= kFewestSamples; }
    /// The growth from the first to the last third of the samples, by their medians, after the first quarter,
    /// in which caches fill: 0.02 is 2 %. 0 with too few samples.
    double growth() const;

private:
    static constexpr std::size_t kFewestSamples = 8;

    std::vector<std::size_t> _samples;
};
