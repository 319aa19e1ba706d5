#pragma once

#include <CoreGraphics/CGPath.h>

#include <string>

// Geometry as text, for tests to compare and to print when they fail.
//
// Numbers have up to six decimals, no trailing zeros and no negative zero.

std::string describe(CGFloat number);
/// "1 2"
std::string describe(CGPoint point);
/// "30 40"
std::string describe(CGSize size);
/// "1 2 30 40" (x, y, width, height as stored), or "null", or "infinite".
std::string describe(CGRect rect);
/// "1 0 0 1 5 6" (a, b, c, d, tx, ty).
std::string describe(CGAffineTransform transform);
/// "M 0 0 L 10 0 Q 15 0 15 5 C 15 7 12 10 10 10 Z": a letter per element, then its points. Empty for an empty
/// path, "null" for a null one.
std::string describe(CGPathRef path);
inline std::string describe(CGMutablePathRef path)
{
    return describe(static_cast<CGPathRef>(path));
}
template <class T> std::string describe(const RetainPtr<T>& object)
{
    return describe(object.get());
}
