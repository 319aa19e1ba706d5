#pragma once

#include <Foundation/NSObjCRuntime.h>

/// A duration in seconds.
using CFTimeInterval = double;
/// Seconds since the first instant of 2001, GMT; negative before it.
using CFAbsoluteTime = double;

/// Seconds from the first instant of 1970, GMT, where Unix time begins, to that of 2001.
inline constexpr CFTimeInterval kCFAbsoluteTimeIntervalSince1970 = 978307200.0;

/// The current time, with a resolution of better than a microsecond. Safe on any thread.
///
/// It follows the system's clock, so it may jump, also backwards, when that is set. Tests can control the
/// clock.
extern "C" KORVID_EXPORT CFAbsoluteTime CFAbsoluteTimeGetCurrent();
