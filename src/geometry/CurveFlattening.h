#pragma once

#include <KorvidAppKit/ZRBezierSeries.h>

#include <vector>

/// Appends the end points of the pieces into which ZRBezierSeries::subdivideToResolution splits one segment:
/// the same bits, except for the sign of a NaN. Faster, because it makes no passes over a growing array.
void flattenCurve(CGPoint start, const ZRBezier& bezier, double resolution, std::vector<CGPoint>& points);
