#pragma once

#include <Foundation/NSObjCRuntime.h>

class NSAppearance;

/// Sets what `NSAppearance::currentDrawingAppearance()` returns outside of any drawing, on every thread. The
/// application calls this when its effective appearance changes. Null, the default, means the light one.
/// Borrowed. Exported for the tests.
KORVID_EXPORT void setApplicationAppearance(NSAppearance* appearance);
