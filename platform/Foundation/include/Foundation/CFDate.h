#pragma once

#include <Foundation/KorvidBase.h>

// C may include this header.

/// A duration in seconds.
typedef double CFTimeInterval;
/// Seconds since the first instant of 2001, GMT; negative before it.
typedef double CFAbsoluteTime;

/// Seconds from the first instant of 1970, GMT, where Unix time begins, to that of 2001.
static const CFTimeInterval kCFAbsoluteTimeIntervalSince1970 = 978307200.0;

KORVID_EXTERN_C_BEGIN

/// The current time, with a resolution of better than a microsecond. Safe on any thread.
///
/// It follows the system's clock, so it may jump, also backwards, when that is set. Tests can control the
/// clock.
KORVID_EXPORT CFAbsoluteTime CFAbsoluteTimeGetCurrent(void);

KORVID_EXTERN_C_END
