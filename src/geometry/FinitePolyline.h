#pragma once

#include <CoreGraphics/CGPath.h>

#include <span>

/// Appends a subpath of straight lines through those of the points that are finite. CGPathAddLines itself
/// adds nothing where a single one is not.
void addFiniteLines(CGMutablePathRef path, std::span<const CGPoint> points);
