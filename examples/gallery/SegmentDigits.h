#pragma once

#include <CoreGraphics/CGContext.h>

/// Strokes a number in the manner of calculators, seven strokes to a digit, with the context's stroke colour
/// and line width. `origin` is the bottom left corner; a digit is `height` high and half as wide.
void strokeNumber(CGContextRef context, std::size_t number, CGPoint origin, CGFloat height);
