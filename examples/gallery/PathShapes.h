#pragma once

#include <CoreGraphics/CGContext.h>
#include <CoreGraphics/CGPath.h>
#include <Foundation/RetainPtr.h>

// The outlines that the page of paths shows by default, each within a unit square, with y up.

/// A spiral of curves, outward from the middle.
RetainPtr<CGPath> makeSpiral();
/// A star with five points, closed.
RetainPtr<CGPath> makeStar();
/// A heart with two lobes and a tip, closed.
RetainPtr<CGPath> makeHeart();
/// A wavy line of 400 points with noise; always the same one.
RetainPtr<CGPath> makeNoisyLine();

/// A path moved and scaled so that it fills the rectangle in one direction and is centred in the other. A
/// path without an extent is only moved.
RetainPtr<CGPath> fitted(CGPathRef path, CGRect rect, bool isYDown);

/// Strokes a path in pieces of a thousand elements. The time of a single stroke grows with the square of its
/// length: one of 300,000 lines takes seconds, in pieces a fraction of that. Round caps and joins hide where
/// the pieces meet, and an opaque colour that they overlap there.
void strokeInPieces(CGContextRef context, CGPathRef path);
