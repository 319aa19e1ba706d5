#pragma once

#include <Foundation/NSObjCRuntime.h>

/// Seconds. A length of time.
using CFTimeInterval = double;
/// Seconds since the first instant of 2001, GMT; negative before it.
using CFAbsoluteTime = double;

/// Seconds from the first instant of 1970, GMT, where Unix time begins, to that of 2001.
inline constexpr CFTimeInterval kCFAbsoluteTimeIntervalSince1970 = 978307200.0;

/// The present time, to better than a microsecond. Safe on any thread.
///
/// It follows the machine's clock, so it may jump, also backwards, when that is set. Tests can drive it by
/// hand.
extern "C" KORVID_EXPORT CFAbsoluteTime CFAbsoluteTimeGetCurrent();
