#pragma once

#include "CoreGraphics/raster/Shape.h"

/// True when the lengths form a valid dash pattern.
bool isDashPattern(CGFloat phase, std::span<const CGFloat> lengths);

/// Sets the dashes of a line style. Null `lengths` and what is no dash pattern give a solid line.
void setDashes(LineStyle& style, CGFloat phase, const CGFloat* lengths, std::size_t count);

/// True when a stroke with these dashes is drawn as a solid line, because there would be too many of them.
/// `path` is in base space.
bool hasTooManyDashes(const CGPath& path, const Pen& pen);

/// The dashes of a path in user space, an open subpath each; curves remain curves. The style must have
/// dashes.
RetainPtr<CGPath> dashedPath(const CGPath& path, const LineStyle& style);
