#pragma once

#include <Foundation/NSObjCRuntime.h>

class NSAppearance;

/// Sets what `NSAppearance::currentDrawingAppearance()` answers outside of any drawing, on every thread: the
/// application calls this whenever its effective appearance changes. Null, as at first, means the light one.
/// Exported for the tests.
KORVID_EXPORT void setApplicationAppearance(NSAppearance* appearance);
