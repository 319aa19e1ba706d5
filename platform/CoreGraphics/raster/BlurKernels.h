#pragma once

#include <cstddef>
#include <span>

// The loops of blurs. All processors give the same results.

/// Of lines that are read or written. They have memory for this many elements more than they use.
inline constexpr std::size_t kBlurPadding = 16;

/// Sets the sums of a line of values and of its neighbours on both sides, each with the weight of its
/// distance: `sums[i]` becomes the sum of `weights[k] * (lines[-k][i] + lines[k][i])`, where k = 0 counts
/// once.
void addWeighted(const float* const* lines, std::span<const float> weights, float* sums, std::size_t count);

/// The same sums, between 0 and 255, rounded.
void addWeighted(
    const float* const* lines, std::span<const float> weights, unsigned char* sums, std::size_t count);
