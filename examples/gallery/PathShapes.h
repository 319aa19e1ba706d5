#pragma once

#include <CoreGraphics/CGPath.h>
#include <Foundation/RetainPtr.h>

// The outlines that the page of paths shows when the user brings none, each within a unit square, with y up.

/// Outward from the middle, by curves.
RetainPtr<CGPath> makeSpiral();
/// Five points, closed.
RetainPtr<CGPath> makeStar();
/// Two lobes and a tip, closed.
RetainPtr<CGPath> makeHeart();
/// A hilly line of 400 points with noise on it; always the same one.
RetainPtr<CGPath> makeNoisyLine();

/// A path moved and scaled evenly so that it fills the middle of a rectangle. One without size stays as large
/// as it is.
RetainPtr<CGPath> fitted(CGPathRef path, CGRect rect, bool isYDown);
