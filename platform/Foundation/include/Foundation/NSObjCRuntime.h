#pragma once

#include <cstdint>

/// Marks a class or function that the shared library offers to its users; everything else stays hidden.
#define KORVID_EXPORT __attribute__((visibility("default")))

/// Signed integer of the machine's word size: indexes, counts that may be negative.
using NSInteger = std::int64_t;
/// Unsigned integer of the machine's word size: lengths, hashes.
using NSUInteger = std::uint64_t;

/// The index that a search returns when it finds nothing.
inline constexpr NSInteger NSNotFound = INT64_MAX;
