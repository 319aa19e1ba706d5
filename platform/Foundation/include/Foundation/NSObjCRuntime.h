#pragma once

#ifndef __cplusplus
#error "This header is for C++20: C may include CoreGraphics/CoreGraphics.h and others in docs/stability.md"
#include "the error above" // A missing file ends the compilation here, before the errors that follow.
#endif

#include <Foundation/KorvidBase.h>

#include <cstdint>

/// Signed integer of the machine's word size: indexes, counts that may be negative.
using NSInteger = std::int64_t;
/// Unsigned integer of the machine's word size: lengths, hashes.
using NSUInteger = std::uint64_t;

/// The index that a search returns when it finds nothing.
inline constexpr NSInteger NSNotFound = INT64_MAX;
