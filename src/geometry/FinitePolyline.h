#pragma once

#include <CoreGraphics/CGPath.h>

#include <span>

/// Appends a subpath of straight lines through the points whose coordinates are finite. CGPathAddLines alone
/// adds nothing if any coordinate is not.
void addFiniteLines(CGMutablePathRef path, std::span<const CGPoint> points);
