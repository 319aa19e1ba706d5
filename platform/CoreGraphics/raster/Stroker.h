#pragma once

#include "CoreGraphics/raster/Shape.h"

/// The outline of a stroke, for filling by the winding rule. `path` and the line style are in user space, the
/// result is mapped to another space. Curves become lines that are at most `tolerance` from the exact
/// outline, in units of the result. The dashes of the style are ignored.
RetainPtr<CGPath> strokeOutline(
    const CGPath& path, const LineStyle& style, const CGAffineTransform& resultFromUser, double tolerance);
